// Lets the test runner print the texts and lists that the tests compare.
#pragma once

#include <doctest/doctest.h>

#include <QString>
#include <string>
#include <vector>

namespace doctest {

template <>
struct StringMaker<QString> {
    static String convert(const QString& text) { return ("\"" + text.toStdString() + "\"").c_str(); }
};

template <>
struct StringMaker<std::vector<std::string>> {
    static String convert(const std::vector<std::string>& list) {
        std::string text = "{";
        for (const std::string& item : list) text += "\n  " + item;
        return (text + "\n}").c_str();
    }
};

}  // namespace doctest
