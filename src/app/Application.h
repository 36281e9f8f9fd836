// Builds everything and ends everything: the one place that knows all the parts. Main thread only.
#pragma once

#include <QApplication>
#include <memory>

#include "app/DeferredCapture.h"
#include "app/DeferredEngine.h"
#include "app/Guide.h"
#include "app/OnlyProgram.h"
#include "app/Prefs.h"
#include "app/QMController.h"
#include "app/QuitQuestion.h"
#include "player/SoundWatch.h"
#include "remote/DesktopLauncher.h"
#include "remote/DesktopMotion.h"
#include "remote/MprisService.h"
#include "remote/RemotePlayer.h"
#include "ui/IdleActs.h"
#include "ui/PlayerKeys.h"
#include "ui/windows/AboutPanel.h"
#include "ui/windows/ContextMenus.h"
#include "ui/windows/ExportPanel.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/ListKeys.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"
#include "ui/windows/PreferencesWindow.h"
#include "ui/windows/RecorderWindows.h"
#include "ui/windows/SpokenDeeds.h"
#include "ui/windows/StatusNotices.h"
#include "ui/windows/TrackInfoPanel.h"
#include "ui/windows/VideoPanel.h"
#include "update/SoftwareUpdater.h"

class QSocketNotifier;

namespace qm {

class Application {
public:
    // `only` is the one program of this home.
    Application(int& argc, char** argv, OnlyProgram& only);
    ~Application();

    int run();

private:
    void connectWindow();
    void comeToFront(const QByteArray& token);
    void startTheRest();
    void buildPanels();
    void endOnSignals();
    void makeUpdaters();
    UpdateServices updateServices();
    void quitAfterAsking();
    void quit();
    [[noreturn]] void end(int status);

    OnlyProgram& m_only;
    QApplication m_application;
    Prefs m_prefs;
    MovieRegistry m_movies;
    DeferredEngine m_engine{m_movies};
    DeferredCapture m_capture{m_engine};
    QMController m_controller;
    AudioRecord m_audioRecord;
    AudioRecordOutlets m_audioRecordOutlets;
    MainWindow m_window;
    StatusNotices m_statusNotices;
    SpokenDeeds m_spokenDeeds;
    ListKeys m_listKeys;
    ContextMenus m_contextMenus;
    LevelMetersPanel m_levelMeters;
    TrackInfoPanel m_trackInfo;
    VideoPanel m_video;
    ExportPanel m_export;
    QuitQuestion m_quitQuestion;
    RecordingWindow m_recording;
    RecorderWindow m_recorder;
    PreferencesWindow m_preferences;
    AboutPanel m_about;
    Guide m_guide{m_controller.notices()};
    PlayerKeys m_keys;
    IdleActs m_idleActs;
    MainWindowState m_state;
    RemotePlayer m_remote;
    MprisService m_mpris;
    DesktopLauncher m_launcher;
    DesktopMotion m_motion;
    SoundWatch m_soundWatch;
    std::unique_ptr<QSocketNotifier> m_signalNotifier;
};

}  // namespace qm
