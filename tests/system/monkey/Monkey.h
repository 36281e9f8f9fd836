// Acts at random on the windows of one program: any key with any modifiers, clicks, drags, the wheel, dropped files,
// sizes and places of windows, and closing them. It leaves no key or button pressed.
#pragma once

#include <string>
#include <vector>

#include "Desktop.h"
#include "Drop.h"
#include "Random.h"

class Monkey {
public:
    // The files are what it drops. It touches file panels only if nothing outside the scratch folder can be written.
    Monkey(Desktop& desktop, Random& random, std::vector<std::string> files, bool mayUseFilePanels);

    void setProgram(pid_t program, Window mainWindow);

    // What it did, in a few words. `answered` becomes false if the program was asked something on the way and said
    // nothing.
    std::string act(bool& answered);

    // Closes every window but the main one, pauses, and puts the sound back. False if a window does not go.
    bool comeToRest();

    // One press of a key by its name, with modifiers by theirs.
    void chord(const std::vector<std::string>& modifiers, const std::string& key);

private:
    std::string anyKey();
    std::string knownChord();
    std::string letters();
    std::string click();
    std::string drag();
    std::string wheel();
    std::string dropFiles(bool& answered);
    std::string changeWindow();
    std::string leave();

    ProgramWindow anyWindow();
    bool isForbidden(const std::vector<std::string>& modifiers, const std::string& key) const;
    void closeFilePanels();

    Desktop& m_desktop;
    Random& m_random;
    FileSource m_source;
    std::vector<std::string> m_files;
    bool m_mayUseFilePanels;
    std::vector<KeyCode> m_keys;
    std::vector<ProgramWindow> m_windows;
    pid_t m_program = 0;
    Window m_mainWindow = 0;
};
