#include "tarnconstants.h"

#define TARN_TEXT(name, text)                         \
    QString const& name()                             \
    {                                                 \
        static QString const s(QStringLiteral(text)); \
        return s;                                     \
    }
#define TARN_PATH(name, prefix, base) \
    CMPath name() { return CMPath(QStringLiteral(prefix), QStringLiteral(base)); }

TARN_TEXT(TarnAirablePrefixForm, "form")
TARN_TEXT(TarnAirablePrefixMessage, "message")
TARN_TEXT(TarnAirablePrefixActionDialog, "dialog")
TARN_TEXT(TarnAirablePrefixContext, "context")
TARN_TEXT(TarnAirablePrefixPlayContext, "playcontext")
TARN_TEXT(TarnAirablePrefixContentContext, "listcontext")
TARN_TEXT(TarnAirablePrefixAction, "action")
TARN_TEXT(TarnAirablePrefixLogout, "logout")
TARN_TEXT(TarnAirablePrefixPreplay, "preplay")
TARN_TEXT(TarnAirableStateChange, "statechange")
// A full value path, not a prefix: the persisted reset flag.
TARN_TEXT(TarnAirableResetRequired, "settings:airable/resetRequired")

TARN_TEXT(TarnAirableAirableServiceType, "airable")
TARN_TEXT(TarnAirableDeezerServiceType, "deezer")
TARN_TEXT(TarnAirableQobuzServiceType, "qobuz")
TARN_TEXT(TarnAirableNapsterServiceType, "napster")
TARN_TEXT(TarnAirableTidalServiceType, "tidal")
TARN_TEXT(TarnAirableHighresAudioServiceType, "highresaudio")
TARN_TEXT(TarnAirableAmazonMusicServiceType, "amazon")
TARN_TEXT(TarnAirableAirableRadioDataType, "radios")
TARN_TEXT(TarnAirableAirableFeedDataType, "feeds")
TARN_TEXT(TarnAirableEncryptionWidevineType, "widevine")

TARN_TEXT(TarnService_Airable_Id, "airable")
TARN_TEXT(TarnService_AirableRadios_Id, "airableRadios")
TARN_TEXT(TarnService_AirableRadios_Icon, "icons/service/airable_radios.png")
TARN_TEXT(TarnService_AirablePodcasts_Id, "airablePodcasts")
TARN_TEXT(TarnService_AirablePodcasts_Icon, "icons/service/airable_podcasts.png")
TARN_TEXT(TarnService_Deezer_Id, "deezer")
TARN_TEXT(TarnService_Deezer_Icon, "icons/service/deezer.png")
TARN_TEXT(TarnService_Qobuz_Id, "qobuz")
TARN_TEXT(TarnService_Qobuz_Icon, "icons/service/qobuz.png")
TARN_TEXT(TarnService_Napster_Id, "napster")
TARN_TEXT(TarnService_Napster_Icon, "icons/service/napster.png")
TARN_TEXT(TarnService_Tidal_Id, "tidal")
TARN_TEXT(TarnService_Tidal_Icon, "icons/service/tidal.png")
TARN_TEXT(TarnService_HighresAudio_Id, "highresaudio")
TARN_TEXT(TarnService_HighresAudio_Icon, "icons/service/highresaudio.png")
TARN_TEXT(TarnService_AmazonMusic_Id, "amazonMusic")
TARN_TEXT(TarnService_AmazonMusic_Icon, "icons/service/amazon_music.png")

TARN_PATH(TarnAirableConfigPath, "settings:", "airable/config")
TARN_PATH(TarnAirableStreamBitratePath, "settings:", "airable/streamBitrate")
TARN_PATH(TarnAirableBrowseServicePrefix, "services:", "")
TARN_PATH(TarnAirableOAuthPath, "oauth:", "airable")
TARN_PATH(TarnAirableProgramPlayLogicPath, "playlogic:", "airable/program")
TARN_PATH(TarnAirablePreparePlaylistItemsPath, "airable:", "preparePlaylistItems")
TARN_PATH(TarnAirableDeezerSignUpLinkPath, "settings:", "airable/deezerSignUpLink")
TARN_PATH(TarnSystemModelNamePath, "settings:", "system/modelName")
TARN_PATH(TarnSystemVersionPath, "settings:", "system/version")
TARN_PATH(TarnSystemPrimaryMacAddressPath, "settings:", "system/primaryMacAddress")
TARN_PATH(TarnUILanguagePath, "settings:", "ui/language")
TARN_PATH(TarnService_Home_UIPath, "ui:", "home")
TARN_PATH(TarnNotificationDisplayOpenPath, "notification:", "open")
TARN_PATH(TarnOAuth2AppRedirectUriPath, "settings:", "oauth2/appRedirectUri")
TARN_PATH(TarnPlayerStoppedPlayingState, "player:", "stoppedPlayingState")

TARN_TEXT(TarnErrorSkipLimitReached, "skipLimitReached")

int TarnPreviousTrackTimeLimit()
{
    return 3000;
}

QString tarnMac2NoColonMac(QString const& mac)
{
    QString out = mac;
    out.remove(QLatin1Char(':'));
    return out;
}
