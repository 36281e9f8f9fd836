// A search field in the look of the program's other fields. Main thread only.
#pragma once

#include <QLineEdit>

namespace qm {

class SearchField : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchField(const QString& hint, QWidget* parent = nullptr);
};

}  // namespace qm
