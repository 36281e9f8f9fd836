#include "ui/controls/FoldedText.h"

#include <doctest/doctest.h>

#include "support/widgets/TestText.h"
#include "ui/controls/TypeAhead.h"

using namespace qm;

namespace {

bool finds(const char* typed, const QStringList& texts) {
    return SearchWords(QString::fromUtf8(typed)).areIn(texts);
}

int leadsTo(TypeAhead& ahead, const QStringList& titles, int selected) {
    return ahead.find(static_cast<int>(titles.size()), selected, [&](int row) { return titles[row]; });
}

}  // namespace

TEST_CASE("case and accents do not count, however they are written") {
    CHECK(folded(u"BJÖRK Guðmundsdóttir") == "bjork gudmundsdottir");
    CHECK(folded(u"Cafe\u0301") == folded(u"CAFÉ"));
    CHECK(folded(u"Straße") == "strasse");
    CHECK(folded(u"Øystein Łódź Æther") == "oystein lodz aether");
    CHECK(folded(u"ΆΛΦΑ") == folded(u"αλφα"));
    CHECK(folded(u"Ёлка") == folded(u"елка"));
    CHECK(folded(u"İstanbul") == "istanbul");
    CHECK(folded(u"ﬁne") == "fine");
    CHECK(folded(u"שָׁלוֹם") == folded(u"שלום"));
    CHECK(folded(u"مُحَمَّد") == folded(u"محمد"));
}

TEST_CASE("signs that are letters of their own count") {
    CHECK(folded(u"น้ำ") != folded(u"นา"));
    CHECK(folded(u"が") != folded(u"か"));
    CHECK(folded(u"が") == folded(u"か\u3099"));
    CHECK(folded(u"한국") == folded(QStringLiteral("한국").normalized(QString::NormalizationForm_D)));
    CHECK(folded(u"🎸") == "🎸");
}

TEST_CASE("each word is found in the title, the artist or the album") {
    const QStringList texts = {"Blue Lantern", "Marlow Quartet", "Night Ferry"};
    CHECK(finds("lantern", texts));
    CHECK(finds("ferry blue", texts));
    CHECK(finds("  ferry   MARL ", texts));
    CHECK_FALSE(finds("blue train", texts));
    CHECK_FALSE(finds("lanternmarlow", texts));
    CHECK(SearchWords(QString(" ")).isEmpty());
}

TEST_CASE("what goes on from what was typed is known to find no more") {
    const auto within = [](const char* narrow, const char* wide) {
        return SearchWords(QString::fromUtf8(narrow)).areWithin(SearchWords(QString::fromUtf8(wide)));
    };
    CHECK(within("blu", "bl"));
    CHECK(within("blue n", "blue"));
    CHECK_FALSE(within("bl", "blu"));
    CHECK_FALSE(within("red", "blue"));
}

TEST_CASE("typed letters lead to the next title that begins with them, round the end") {
    const QStringList titles = {"Autumn", "blue", "Blau", "Étude", "  Azur"};
    TypeAhead ahead;
    ahead.type("b");
    CHECK(leadsTo(ahead, titles, -1) == 1);
    CHECK(leadsTo(ahead, titles, 1) == 2);
    ahead.type("la");
    CHECK(leadsTo(ahead, titles, 1) == 2);
    CHECK(leadsTo(ahead, titles, 2) == 2);
    ahead.takeBack();
    ahead.takeBack();
    CHECK(leadsTo(ahead, titles, 2) == 1);
    ahead.forget();
    ahead.type("e");
    CHECK(leadsTo(ahead, titles, 0) == 3);
    ahead.forget();
    ahead.type("a");
    CHECK(leadsTo(ahead, titles, 3) == 4);
    ahead.type("a");
    CHECK(leadsTo(ahead, titles, 4) == 0);
    ahead.type("x");
    CHECK(leadsTo(ahead, titles, 0) == -1);
}
