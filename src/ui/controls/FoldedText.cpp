#include "ui/controls/FoldedText.h"

#include <QHash>
#include <algorithm>
#include <array>
#include <utility>

namespace qm {

namespace {

constexpr char16_t kUnknown = 0xFFFF, kSeveral = 0xFFFE, kNothing = 0xFFFD;
constexpr std::array kVoicingMarks = {u'\u3099', u'\u309A'};

// Letters that have no decomposition but are searched for by a base letter.
const QHash<char16_t, QString>& kin() {
    static const QHash<char16_t, QString> kin = {
        {u'ß', QStringLiteral("ss")}, {u'æ', QStringLiteral("ae")}, {u'œ', QStringLiteral("oe")},
        {u'ø', QStringLiteral("o")},  {u'ł', QStringLiteral("l")},  {u'đ', QStringLiteral("d")},
        {u'ħ', QStringLiteral("h")},  {u'ı', QStringLiteral("i")},  {u'þ', QStringLiteral("th")},
        {u'ð', QStringLiteral("d")},  {u'’', QStringLiteral("'")},  {u'‘', QStringLiteral("'")}};
    return kin;
}

bool isAccent(QChar c) {
    if (c.category() != QChar::Mark_NonSpacing) return false;
    if (std::find(kVoicingMarks.begin(), kVoicingMarks.end(), c) != kVoicingMarks.end()) return false;
    const QChar::Script script = c.script();
    return script == QChar::Script_Inherited || script == QChar::Script_Latin || script == QChar::Script_Greek ||
           script == QChar::Script_Cyrillic || script == QChar::Script_Hebrew || script == QChar::Script_Arabic;
}

QString withoutAccents(const QString& text) {
    QString result;
    for (const QChar c : text.toCaseFolded().normalized(QString::NormalizationForm_KD).toCaseFolded()) {
        if (isAccent(c)) continue;
        const auto known = kin().constFind(c.unicode());
        if (known == kin().constEnd())
            result += c;
        else
            result += *known;
    }
    return result;
}

// What single letters fold to. Most of a long list is written in a few hundred of them.
class Folding {
public:
    Folding() { m_letters.fill(kUnknown); }

    void append(QString& result, QChar letter) {
        char16_t& known = m_letters[letter.unicode()];
        if (known == kUnknown) known = learn(letter);
        if (known == kSeveral)
            result += m_several.value(letter.unicode());
        else if (known != kNothing)
            result += QChar(known);
    }

private:
    char16_t learn(QChar letter) {
        const QString text = withoutAccents(QString(letter));
        if (text.isEmpty()) return kNothing;
        if (text.size() == 1 && text[0].unicode() < kNothing) return text[0].unicode();
        m_several.insert(letter.unicode(), text);
        return kSeveral;
    }

    std::array<char16_t, 0x10000> m_letters;
    QHash<char16_t, QString> m_several;
};

}  // namespace

void foldInto(QString& result, QStringView text) {
    static Folding folding;
    result.resize(0);  // which keeps its memory
    for (qsizetype i = 0; i < text.size(); ++i) {
        // Letters beyond the first plane have no accents; some have case.
        if (text[i].isHighSurrogate() && i + 1 < text.size())
            result += withoutAccents(text.mid(i++, 2).toString());
        else
            folding.append(result, text[i]);
    }
}

QString folded(QStringView text) {
    QString result;
    foldInto(result, text);
    return result;
}

SearchWords::SearchWords(const QString& typed) : m_words(folded(typed).split(u' ', Qt::SkipEmptyParts)) {}

bool SearchWords::areIn(const QStringList& texts) const {
    static QString everything, one;
    everything.resize(0);
    for (const QString& text : texts) {
        foldInto(one, text);
        everything += one;
        everything += u'\n';
    }
    return std::all_of(m_words.begin(), m_words.end(),
                       [](const QString& word) { return QStringView(everything).contains(word); });
}

bool SearchWords::areWithin(const SearchWords& wider) const {
    return std::all_of(wider.m_words.begin(), wider.m_words.end(), [&](const QString& word) {
        return std::any_of(m_words.begin(), m_words.end(), [&](const QString& mine) { return mine.contains(word); });
    });
}

}  // namespace qm
