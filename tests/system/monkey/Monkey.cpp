#include "Monkey.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>
#include <utility>

namespace {

struct Chord {
    std::vector<std::string> modifiers;
    std::string key;
};

// Every window and every command that changes much, so that chance does not have to find them.
const std::vector<Chord>& chords() {
    static const std::vector<Chord> list = {
        {{}, "F1"},
        {{}, "F10"},
        {{}, "Delete"},
        {{}, "Return"},
        {{}, "space"},
        {{}, "bracketleft"},
        {{}, "bracketright"},
        {{}, "l"},
        {{}, "Home"},
        {{"Control"}, "1"},
        {{"Control"}, "2"},
        {{"Control"}, "3"},
        {{"Control"}, "4"},
        {{"Control"}, "5"},
        {{"Control"}, "o"},
        {{"Control"}, "e"},
        {{"Control"}, "r"},
        {{"Control"}, "z"},
        {{"Control"}, "w"},
        {{"Control"}, "0"},
        {{"Control"}, "comma"},
        {{"Control"}, "Return"},
        {{"Shift"}, "space"},
        {{"Shift"}, "l"},
        {{"Control", "Shift"}, "f"},
        {{"Control", "Shift"}, "t"},
        {{"Control", "Shift"}, "Delete"},
    };
    return list;
}

constexpr std::array kModifiers = {"Shift", "Control", "Alt", "Super"};
constexpr int kScreenWidth = 1280, kScreenHeight = 1024;
constexpr int kMenuBarHeight = 26, kLastItemHeight = 36;

std::string joined(const std::vector<std::string>& modifiers, const std::string& key) {
    std::string text;
    for (const std::string& one : modifiers) text += one + "+";
    return text + key;
}

std::string at(int x, int y, const ProgramWindow& window) {
    const std::string name = window.popup ? "a popup" : "\"" + window.name + "\"";
    return " at " + std::to_string(x) + "," + std::to_string(y) + " of " + name;
}

bool isFilePanel(const ProgramWindow& window) {
    return window.name == "Open" || window.name == "Save" || window.name == "Keep the recording?";
}

}  // namespace

Monkey::Monkey(Desktop& desktop, Random& random, std::vector<std::string> files, bool mayUseFilePanels)
    : m_desktop(desktop),
      m_random(random),
      m_source(desktop),
      m_files(std::move(files)),
      m_mayUseFilePanels(mayUseFilePanels),
      m_keys(desktop.keys()) {}

void Monkey::setProgram(pid_t program, Window mainWindow) {
    m_program = program;
    m_mainWindow = mainWindow;
}

std::string Monkey::act(bool& answered) {
    m_windows = m_desktop.windowsOf(m_program);
    answered = true;
    if (!m_mayUseFilePanels) closeFilePanels();
    const int kind = m_random.below(100);
    if (kind < 34) return anyKey();
    if (kind < 46) return knownChord();
    if (kind < 49) return letters();
    if (kind < 72) return click();
    if (kind < 80) return drag();
    if (kind < 86) return wheel();
    if (kind < 88) return dropFiles(answered);
    if (kind < 91) return changeWindow();
    return leave();
}

void Monkey::closeFilePanels() {
    for (const ProgramWindow& window : m_windows)
        if (isFilePanel(window)) m_desktop.askToClose(window.id);
}

// Ctrl+Q ends the program, which has its own turn.
bool Monkey::isForbidden(const std::vector<std::string>& modifiers, const std::string& key) const {
    const bool control = std::find(modifiers.begin(), modifiers.end(), "Control") != modifiers.end();
    return control && key == "q";
}

void Monkey::chord(const std::vector<std::string>& modifiers, const std::string& key) {
    for (const std::string& one : modifiers) m_desktop.pressKey(m_desktop.keyNamed(one + "_L"));
    m_desktop.pressKey(m_desktop.keyNamed(key));
    m_desktop.releaseKey(m_desktop.keyNamed(key));
    for (const std::string& one : modifiers) m_desktop.releaseKey(m_desktop.keyNamed(one + "_L"));
    m_desktop.flush();
}

std::string Monkey::anyKey() {
    const KeyCode key = m_random.oneOf(m_keys);
    const std::string name = m_desktop.nameOf(key);
    std::vector<std::string> modifiers;
    if (!m_random.oneIn(3)) {
        for (const char* one : kModifiers)
            if (m_random.oneIn(4)) modifiers.emplace_back(one);
    }
    if (isForbidden(modifiers, name)) return "nothing";
    for (const std::string& one : modifiers) m_desktop.pressKey(m_desktop.keyNamed(one + "_L"));
    for (int presses = m_random.oneIn(10) ? 5 : 1; presses > 0; --presses) {
        m_desktop.pressKey(key);
        m_desktop.releaseKey(key);
    }
    for (const std::string& one : modifiers) m_desktop.releaseKey(m_desktop.keyNamed(one + "_L"));
    m_desktop.flush();
    return "key " + joined(modifiers, name);
}

std::string Monkey::knownChord() {
    const Chord& chosen = m_random.oneOf(chords());
    chord(chosen.modifiers, chosen.key);
    return "key " + joined(chosen.modifiers, chosen.key);
}

std::string Monkey::letters() {
    std::string text;
    for (int count = m_random.between(1, 8); count > 0; --count) {
        const std::string letter(1, static_cast<char>('a' + m_random.below(26)));
        chord({}, letter);
        text += letter;
    }
    return "type " + text;
}

// A menu or a list that is open is what the hand goes for, and then what is in front.
ProgramWindow Monkey::anyWindow() {
    if (m_windows.empty()) return {m_mainWindow, "Quillmere", 0, 0, kScreenWidth, kScreenHeight, false};
    if (m_windows.back().popup && !m_random.oneIn(4)) return m_windows.back();
    if (!m_random.oneIn(3)) {
        const auto front =
            std::find_if(m_windows.rbegin(), m_windows.rend(), [](const auto& one) { return !one.popup; });
        if (front != m_windows.rend()) return *front;
    }
    return m_random.oneOf(m_windows);
}

std::string Monkey::click() {
    const ProgramWindow window = anyWindow();
    const bool menus = window.id == m_mainWindow && m_random.oneIn(8);
    const int x = m_random.below(std::max(1, window.width));
    int y = m_random.below(std::max(1, menus ? kMenuBarHeight : window.height));
    if (window.popup && window.height - y < kLastItemHeight && !m_random.oneIn(20)) y /= 2;  // seldom on Quit
    const unsigned button = m_random.oneIn(8) ? 3 : m_random.oneIn(20) ? 2 : 1;
    const int times = m_random.oneIn(4) ? m_random.between(2, 3) : 1;
    m_desktop.moveMouse(window.x + x, window.y + y);
    for (int i = 0; i < times; ++i) {
        m_desktop.pressButton(button);
        m_desktop.releaseButton(button);
    }
    m_desktop.flush();
    return "click " + std::to_string(times) + " times with " + std::to_string(button) + at(x, y, window);
}

std::string Monkey::drag() {
    const ProgramWindow window = anyWindow();
    int x = m_random.below(std::max(1, window.width)), y = m_random.below(std::max(1, window.height));
    std::string text = "drag" + at(x, y, window) + " by";
    const std::vector<std::string> modifiers(m_random.oneIn(6) ? 1 : 0, m_random.oneOf(kModifiers));
    for (const std::string& one : modifiers) m_desktop.pressKey(m_desktop.keyNamed(one + "_L"));
    m_desktop.moveMouse(window.x + x, window.y + y);
    m_desktop.pressButton(1);
    for (int steps = m_random.between(2, 8); steps > 0; --steps) {
        const int right = m_random.between(-120, 120), down = m_random.oneIn(2) ? m_random.between(-60, 60) : 0;
        x += right;
        y += down;
        m_desktop.moveMouse(window.x + x, window.y + y);
        text += " " + std::to_string(right) + "," + std::to_string(down);
    }
    const bool given = m_random.oneIn(12);
    if (given) chord({}, "Escape");
    m_desktop.releaseButton(1);
    for (const std::string& one : modifiers) m_desktop.releaseKey(m_desktop.keyNamed(one + "_L"));
    m_desktop.flush();
    return text + (given ? " and Escape" : "");
}

std::string Monkey::wheel() {
    constexpr unsigned kUp = 4, kLeft = 6;
    const ProgramWindow window = anyWindow();
    const int x = m_random.below(std::max(1, window.width)), y = m_random.below(std::max(1, window.height));
    const unsigned direction = (m_random.oneIn(5) ? kLeft : kUp) + static_cast<unsigned>(m_random.below(2));
    const int notches = m_random.between(1, 10);
    m_desktop.moveMouse(window.x + x, window.y + y);
    for (int i = 0; i < notches; ++i) {
        m_desktop.pressButton(direction);
        m_desktop.releaseButton(direction);
    }
    m_desktop.flush();
    return "wheel " + std::to_string(direction) + " " + std::to_string(notches) + " times" + at(x, y, window);
}

std::string Monkey::dropFiles(bool& answered) {
    std::vector<std::string> files;
    std::string text = "drop";
    for (int count = m_random.oneIn(3) ? 3 : 1; count > 0; --count) {
        files.push_back(m_random.oneOf(m_files));
        text += " " + files.back().substr(files.back().rfind('/') + 1);
    }
    const auto main =
        std::find_if(m_windows.begin(), m_windows.end(), [&](const auto& one) { return one.id == m_mainWindow; });
    if (main == m_windows.end()) return "nothing";
    std::vector<FileSource::Place> way;
    for (int steps = m_random.between(1, 4); steps > 0; --steps)
        way.push_back({main->x + m_random.below(main->width), main->y + m_random.below(main->height)});
    if (!m_random.oneIn(3)) way.push_back({main->x + main->width / 3, main->y + main->height * 3 / 4});  // on the list
    const Dropped dropped = m_source.drop(files, main->id, way);
    answered = dropped != Dropped::NoAnswer;
    return text + at(way.back().x - main->x, way.back().y - main->y, *main) +
           (dropped == Dropped::Taken     ? ": taken"
            : dropped == Dropped::Refused ? ": refused"
                                          : ": no answer");
}

std::string Monkey::changeWindow() {
    const ProgramWindow window = anyWindow();
    if (window.popup) return "nothing";
    switch (m_random.below(5)) {
        case 0: {
            const int width = m_random.between(1, kScreenWidth), height = m_random.between(1, kScreenHeight);
            m_desktop.resize(window.id, width, height);
            return "size " + std::to_string(width) + "x" + std::to_string(height) + " of \"" + window.name + "\"";
        }
        case 1: {
            const int x = m_random.between(-200, kScreenWidth - 100), y = m_random.between(-50, kScreenHeight - 100);
            m_desktop.moveWindow(window.id, x, y);
            return "place " + std::to_string(x) + "," + std::to_string(y) + " of \"" + window.name + "\"";
        }
        case 2:
            m_desktop.switchMaximised(window.id);
            return "maximise or back \"" + window.name + "\"";
        case 3:
            m_desktop.minimise(window.id);
            m_desktop.bringToFront(window.id);
            return "minimise and bring back \"" + window.name + "\"";
        default:
            m_desktop.bringToFront(window.id);
            return "bring to front \"" + window.name + "\"";
    }
}

std::string Monkey::leave() {
    const ProgramWindow window = anyWindow();
    if (window.id == m_mainWindow || window.popup || m_random.oneIn(2)) {
        chord({}, "Escape");
        return "key Escape";
    }
    m_desktop.askToClose(window.id);
    return "close \"" + window.name + "\"";
}

bool Monkey::comeToRest() {
    constexpr int kTries = 200;
    const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds(50)); };
    for (int tries = 0;; ++tries) {
        m_windows = m_desktop.windowsOf(m_program);
        const bool alone = m_windows.size() == 1 && m_windows.front().id == m_mainWindow;
        if (alone || tries == kTries) {
            if (!alone) return false;
            break;
        }
        chord({}, "Escape");
        for (const ProgramWindow& window : m_windows)
            if (window.id != m_mainWindow && !window.popup) m_desktop.askToClose(window.id);
        m_desktop.bringToFront(m_mainWindow);
        pause();
    }
    m_desktop.bringToFront(m_mainWindow);
    pause();
    // Window after window was closed faster than a window manager thinks: it may have given the keys to none.
    m_desktop.giveKeysTo(m_mainWindow);
    chord({}, "p");
    chord({"Control"}, "0");
    pause();
    return true;
}
