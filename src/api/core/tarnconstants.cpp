#include "tarnconstants.h"
#include "tarnword.h"

#define TARN_PATH(name, prefix, base) \
    CMPath name() { return CMPath(QStringLiteral(prefix), QStringLiteral(base)); }

TARN_WORD(TarnAirablePrefixForm, "form")
TARN_WORD(TarnAirablePrefixMessage, "message")
TARN_WORD(TarnAirablePrefixActionDialog, "dialog")
TARN_WORD(TarnAirablePrefixContext, "context")
TARN_WORD(TarnAirablePrefixPlayContext, "playcontext")
TARN_WORD(TarnAirablePrefixContentContext, "listcontext")
TARN_WORD(TarnAirablePrefixAction, "action")
TARN_WORD(TarnAirablePrefixLogout, "logout")
TARN_WORD(TarnAirablePrefixPreplay, "preplay")
TARN_WORD(TarnAirableStateChange, "statechange")
// A full value path, not a prefix: the persisted reset flag.
TARN_WORD(TarnAirableResetRequired, "settings:airable/resetRequired")

TARN_WORD(TarnAirableAirableServiceType, "airable")
TARN_WORD(TarnAirableDeezerServiceType, "deezer")
TARN_WORD(TarnAirableQobuzServiceType, "qobuz")
TARN_WORD(TarnAirableNapsterServiceType, "napster")
TARN_WORD(TarnAirableTidalServiceType, "tidal")
TARN_WORD(TarnAirableHighresAudioServiceType, "highresaudio")
TARN_WORD(TarnAirableAmazonMusicServiceType, "amazon")
TARN_WORD(TarnAirableAirableRadioDataType, "radios")
TARN_WORD(TarnAirableAirableFeedDataType, "feeds")
TARN_WORD(TarnAirableEncryptionWidevineType, "widevine")

TARN_WORD(TarnService_Airable_Id, "airable")
TARN_WORD(TarnService_AirableRadios_Id, "airableRadios")
TARN_WORD(TarnService_AirableRadios_Icon, "icons/service/airable_radios.png")
TARN_WORD(TarnService_AirablePodcasts_Id, "airablePodcasts")
TARN_WORD(TarnService_AirablePodcasts_Icon, "icons/service/airable_podcasts.png")
TARN_WORD(TarnService_Deezer_Id, "deezer")
TARN_WORD(TarnService_Deezer_Icon, "icons/service/deezer.png")
TARN_WORD(TarnService_Qobuz_Id, "qobuz")
TARN_WORD(TarnService_Qobuz_Icon, "icons/service/qobuz.png")
TARN_WORD(TarnService_Napster_Id, "napster")
TARN_WORD(TarnService_Napster_Icon, "icons/service/napster.png")
TARN_WORD(TarnService_Tidal_Id, "tidal")
TARN_WORD(TarnService_Tidal_Icon, "icons/service/tidal.png")
TARN_WORD(TarnService_HighresAudio_Id, "highresaudio")
TARN_WORD(TarnService_HighresAudio_Icon, "icons/service/highresaudio.png")
TARN_WORD(TarnService_AmazonMusic_Id, "amazonMusic")
TARN_WORD(TarnService_AmazonMusic_Icon, "icons/service/amazon_music.png")

TARN_PATH(TarnAirableConfigPath, "settings:", "airable/config")
TARN_PATH(TarnAirableStreamBitratePath, "settings:", "airable/streamBitrate")
TARN_PATH(TarnAirableBrowseServicePrefix, "services:", "")
TARN_PATH(TarnAirableOAuthPath, "oauth:", "airable")
TARN_PATH(TarnAirableProgramPlayLogicPath, "playlogic:", "airable/program")
TARN_PATH(TarnAirablePreparePlaylistItemsPath, "airable:", "preparePlaylistItems")
TARN_PATH(TarnAirableDeezerSignUpLinkPath, "settings:", "airable/deezerSignUpLink")
TARN_PATH(TarnAirableBlockCacheSizePath, "settings:", "airable/blockCacheSize")
TARN_PATH(TarnSystemModelNamePath, "settings:", "system/modelName")
TARN_PATH(TarnSystemVersionPath, "settings:", "system/version")
TARN_PATH(TarnSystemPrimaryMacAddressPath, "settings:", "system/primaryMacAddress")
TARN_PATH(TarnSystemCaCertificatesPath, "settings:", "system/caCertificates")
TARN_PATH(TarnUILanguagePath, "settings:", "ui/language")
TARN_PATH(TarnService_Home_UIPath, "ui:", "home")
TARN_PATH(TarnNotificationDisplayOpenPath, "notification:", "open")
TARN_PATH(TarnOAuth2AppRedirectUriPath, "settings:", "oauth2/appRedirectUri")
TARN_PATH(TarnPlayerStoppedPlayingState, "player:", "stoppedPlayingState")

TARN_WORD(TarnErrorSkipLimitReached, "skipLimitReached")

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
