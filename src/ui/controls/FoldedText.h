// Text as it is compared when something is looked for: without case and accents, whatever way they are written in.
// Signs that are letters of their own in their script stay: vowels and tones of Thai, the marks of Japanese. Main
// thread only, for what a letter folds to is kept.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace qm {

QString folded(QStringView text);

// The same into a text that is used again and again, so that 100 000 titles take no memory of their own.
void foldInto(QString& result, QStringView text);

// What is looked for: words, each of which has to be found in one of the texts.
class SearchWords {
public:
    explicit SearchWords(const QString& typed);

    bool isEmpty() const { return m_words.isEmpty(); }
    bool areIn(const QStringList& texts) const;
    bool areWithin(const SearchWords& wider) const;  // every text that these match, `wider` matches as well

private:
    QStringList m_words;  // folded
};

}  // namespace qm
