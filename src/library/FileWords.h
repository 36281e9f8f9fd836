// What is said of a file that is not taken, or that gives no track: its kind by its name, what is wrong with it, and
// where it was looked for. Any thread.
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include "engine/api/Result.h"

namespace qm {

// What the user can do about a file that is not taken.
enum class Remedy { None, OpenFolder, AddFile, OpenAnyway };

struct Refusal {
    QString text;  // empty: the file is taken
    Remedy remedy = Remedy::None;
};

// Why a dropped file is not taken. Looks at the file, which may take long.
Refusal dropRefusal(const QString& path);

// Why a file is not taken by Open Any Sound, which looks at no kind. Looks at the file, which may take long.
Refusal soundRefusal(const QString& path);

// Why a file that was typed into the open panel is not taken: that looks at its name more strictly.
Refusal panelRefusal(const QString& path);

// Why an address that names no file of this machine is not taken.
Refusal addressRefusal(const QUrl& address);

// Why a file gave no track, and that of several none did.
QString failureWords(const QString& path, const Error& error);
QString nothingPlayedWords();

// Of a drop one file is taken; `others` of the rest could be added too.
QString firstWillBeAddedWords(const QStringList& dropped);
QString onlyFirstWords(const QString& path, int dropped, int others);

}  // namespace qm
