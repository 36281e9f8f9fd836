// The two interfaces of the Media Player Remote Interfacing Specification on the bus. They translate; what is meant
// stands in RemotePlayer. Main thread only.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariantMap>

namespace qm {

class RemotePlayer;

inline const QString kBusConnection = QStringLiteral("remote");  // the name of the connection within the program

class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes CONSTANT)
    Q_PROPERTY(bool CanRaise READ yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ schemes CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ mimeTypes CONSTANT)

public:
    MprisRoot(RemotePlayer& player, QObject* parent);

    bool yes() const { return true; }
    bool no() const { return false; }
    QString identity() const;
    QString desktopEntry() const;
    QStringList schemes() const;
    QStringList mimeTypes() const;

public slots:
    void Raise();
    void Quit();

private:
    RemotePlayer& m_player;
};

class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QString LoopStatus READ loopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ minimumRate)
    Q_PROPERTY(double MaximumRate READ maximumRate)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPause)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)

public:
    MprisPlayer(RemotePlayer& player, QObject* parent);

    QString playbackStatus() const { return read("PlaybackStatus").toString(); }
    QString loopStatus() const { return read("LoopStatus").toString(); }
    void setLoopStatus(const QString& status);  // "Track" or "None"; anything else is ignored
    double rate() const { return read("Rate").toDouble(); }
    void setRate(double rate);
    double minimumRate() const { return read("MinimumRate").toDouble(); }
    double maximumRate() const { return read("MaximumRate").toDouble(); }
    double volume() const { return read("Volume").toDouble(); }
    void setVolume(double volume);
    QVariantMap metadata() const { return read("Metadata").toMap(); }
    qlonglong position() const;
    bool canGoNext() const { return read("CanGoNext").toBool(); }
    bool canGoPrevious() const { return read("CanGoPrevious").toBool(); }
    bool canPlay() const { return read("CanPlay").toBool(); }
    bool canPause() const { return read("CanPause").toBool(); }
    bool canSeek() const { return read("CanSeek").toBool(); }
    bool canControl() const { return read("CanControl").toBool(); }

public slots:
    void Play();
    void Pause();
    void PlayPause();
    void Stop();
    void Next();
    void Previous();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath& TrackId, qlonglong Position);
    void OpenUri(const QString& Uri, const QDBusMessage& call);  // an error for what the list does not take

signals:
    void Seeked(qlonglong Position);

private:
    QVariant read(const char* property) const;

    RemotePlayer& m_player;
};

}  // namespace qm
