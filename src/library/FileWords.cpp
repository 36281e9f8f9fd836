#include "library/FileWords.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

#include "app/state/FilePath.h"
#include "ui/dialogs/FileAcceptance.h"

namespace qm {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("qm::FileWords", text);
}

QString nameOf(const QString& path) {
    const QString name = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    return name.isEmpty() ? path : name;
}

QString folderOf(const QString& path) {
    return path.section(u'/', 0, -2, QString::SectionSkipEmpty | QString::SectionIncludeLeadingSep);
}

// By their names; every other kind is called by its extension.
QString kindName(const QString& extension) {
    static const QHash<QString, QString> names = {
        {"wv", "WavPack"},    {"ac3", "AC-3"},       {"eac3", "E-AC-3"},   {"ec3", "E-AC-3"},     {"ogg", "Ogg"},
        {"oga", "Ogg"},       {"ogv", "Ogg"},        {"opus", "Opus"},     {"mkv", "Matroska"},   {"mka", "Matroska"},
        {"webm", "WebM"},     {"mid", "MIDI"},       {"txt", "Text"},      {"text", "Text"},      {"md", "Text"},
        {"log", "Text"},      {"jpg", "Picture"},    {"jpeg", "Picture"},  {"png", "Picture"},    {"gif", "Picture"},
        {"bmp", "Picture"},   {"webp", "Picture"},   {"svg", "Picture"},   {"tif", "Picture"},    {"tiff", "Picture"},
        {"m3u", "Play list"}, {"m3u8", "Play list"}, {"pls", "Play list"}, {"xspf", "Play list"}, {"cue", "Cue sheet"},
        {"zip", "Archive"},   {"gz", "Archive"},     {"7z", "Archive"},    {"rar", "Archive"},    {"tar", "Archive"}};
    return names.value(extension, extension.toUpper());
}

Refusal kindRefusal(const QString& path) {
    const QString extension = pathExtension(path).toLower();
    if (extension.isEmpty()) return {tr("Files without an ending are not played: %1").arg(nameOf(path))};
    if (openPanelTypes().contains(extension))
        return {tr("%1 files are not taken by dropping: %2").arg(extension, nameOf(path)), Remedy::AddFile};
    if (soundTypes().contains(extension))
        return {tr("%1 files are not taken by dropping: %2").arg(kindName(extension), nameOf(path)),
                Remedy::OpenAnyway};
    return {tr("%1 files are not played: %2").arg(kindName(extension), nameOf(path))};
}

// What the engine says of the file, without its path.
QString reasonOf(const Error& error) {
    const QString message = QString::fromStdString(error.message);
    return message.section(QStringLiteral(": "), -1);
}

}  // namespace

Refusal soundRefusal(const QString& path) {
    if (isFolder(path)) return {tr("Folders are not played: %1").arg(nameOf(path)), Remedy::OpenFolder};
    if (!isFile(path)) return {tr("%1 cannot be found in %2").arg(nameOf(path), folderOf(path))};
    return {};
}

Refusal dropRefusal(const QString& path) {
    if (isValidFileForDrop(path)) return {};
    const Refusal refusal = soundRefusal(path);
    return refusal.text.isEmpty() ? kindRefusal(path) : refusal;
}

Refusal panelRefusal(const QString& path) {
    const Refusal refusal = dropRefusal(path);
    if (refusal.remedy == Remedy::OpenAnyway)
        return {
            tr("%1 files are not offered by the panel: %2").arg(kindName(pathExtension(path).toLower()), nameOf(path)),
            Remedy::OpenAnyway};
    if (!refusal.text.isEmpty()) return refusal;
    return {tr("%1 files are not offered by the panel: %2").arg(pathExtension(path), nameOf(path)), Remedy::AddFile};
}

Refusal addressRefusal(const QUrl& address) {
    const QString scheme = address.scheme();
    if (scheme.isEmpty()) return {tr("What was dropped is no file")};
    if (scheme == u"http" || scheme == u"https")
        return {tr("Web addresses are not played: %1").arg(address.toDisplayString())};
    return {tr("%1 addresses are not played: %2").arg(scheme, address.toDisplayString())};
}

QString failureWords(const QString& path, const Error& error) {
    const QString name = nameOf(path);
    switch (error.category) {
        case ErrorCategory::NotFound:
            return tr("%1 cannot be found in %2").arg(name, folderOf(path));
        case ErrorCategory::Unreadable:
            return tr("%1 cannot be read: %2").arg(name, reasonOf(error));
        case ErrorCategory::Unsupported:
            return tr("%1 is of a kind that is not played").arg(name);
        case ErrorCategory::Protected:
            return tr("%1 is protected against copying and cannot be played").arg(name);
        case ErrorCategory::Damaged:
            return tr("%1 is damaged, or not what its name says").arg(name);
        case ErrorCategory::NoAnswer:
            return tr("%1 cannot be read").arg(name);
        case ErrorCategory::TooLong:
            return name + u' ' + QString::fromStdString(error.message);
        default:
            return tr("%1 cannot be opened: %2").arg(name, reasonOf(error));
    }
}

QString nothingPlayedWords() {
    return tr("Nothing in these files can be played.");
}

QString firstWillBeAddedWords(const QStringList& dropped) {
    return tr("Only %1 will be added, the first of %2").arg(nameOf(dropped.first())).arg(dropped.size());
}

QString onlyFirstWords(const QString& path, int dropped, int others) {
    if (others == 0 && dropped == 2) return tr("Only %1 was added, the other is not played").arg(nameOf(path));
    if (others == 0) return tr("Only %1 was added, the other %2 are not played").arg(nameOf(path)).arg(dropped - 1);
    return tr("Only %1 was added, the first of %2").arg(nameOf(path)).arg(dropped);
}

}  // namespace qm
