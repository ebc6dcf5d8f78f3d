#pragma once

#include "cmpath.h"

#include <QString>

// The platform's constants, all in one place. The worker's own prefix is
// "airable:"; the prefixes below follow it directly. None holds ':' or a
// regular-expression character, none is the start of another, and none
// begins with "http", since a body with that start is a cloud URL.

// Path prefixes below the worker.
QString const& TarnAirablePrefixForm();
QString const& TarnAirablePrefixMessage();
QString const& TarnAirablePrefixActionDialog();
QString const& TarnAirablePrefixContext();
QString const& TarnAirablePrefixPlayContext();
QString const& TarnAirablePrefixContentContext();
QString const& TarnAirablePrefixAction();
QString const& TarnAirablePrefixLogout();
QString const& TarnAirablePrefixPreplay();
QString const& TarnAirableStateChange();
// The full text of the value path of the persisted reset flag.
QString const& TarnAirableResetRequired();

// Cloud service types, data types, encryption.
QString const& TarnAirableAirableServiceType();
QString const& TarnAirableDeezerServiceType();
QString const& TarnAirableQobuzServiceType();
QString const& TarnAirableNapsterServiceType();
QString const& TarnAirableTidalServiceType();
QString const& TarnAirableHighresAudioServiceType();
QString const& TarnAirableAmazonMusicServiceType();
QString const& TarnAirableAirableRadioDataType();
QString const& TarnAirableAirableFeedDataType();
QString const& TarnAirableEncryptionWidevineType();

// The platform's service ids and icons.
QString const& TarnService_Airable_Id();
QString const& TarnService_AirableRadios_Id();
QString const& TarnService_AirableRadios_Icon();
QString const& TarnService_AirablePodcasts_Id();
QString const& TarnService_AirablePodcasts_Icon();
QString const& TarnService_Deezer_Id();
QString const& TarnService_Deezer_Icon();
QString const& TarnService_Qobuz_Id();
QString const& TarnService_Qobuz_Icon();
QString const& TarnService_Napster_Id();
QString const& TarnService_Napster_Icon();
QString const& TarnService_Tidal_Id();
QString const& TarnService_Tidal_Icon();
QString const& TarnService_HighresAudio_Id();
QString const& TarnService_HighresAudio_Icon();
QString const& TarnService_AmazonMusic_Id();
QString const& TarnService_AmazonMusic_Icon();

// Paths of the platform, outside the worker's prefix unless noted.
CMPath TarnAirableConfigPath();
CMPath TarnAirableStreamBitratePath();
CMPath TarnAirableBrowseServicePrefix();
CMPath TarnAirableOAuthPath();
CMPath TarnAirableProgramPlayLogicPath();
CMPath TarnAirablePreparePlaylistItemsPath();
CMPath TarnAirableDeezerSignUpLinkPath();
// Bytes each thread of the module keeps of released answers for the next one.
CMPath TarnAirableBlockCacheSizePath();
CMPath TarnSystemModelNamePath();
CMPath TarnSystemVersionPath();
CMPath TarnSystemPrimaryMacAddressPath();
// A PEM file of the CA certificates the HTTP transport trusts in place of
// the system's store; empty or unset for the system's store.
CMPath TarnSystemCaCertificatesPath();
CMPath TarnUILanguagePath();
CMPath TarnService_Home_UIPath();
CMPath TarnNotificationDisplayOpenPath();
CMPath TarnOAuth2AppRedirectUriPath();
CMPath TarnPlayerStoppedPlayingState();

QString const& TarnErrorSkipLimitReached();
// Milliseconds into a track after which "previous" restarts it.
int TarnPreviousTrackTimeLimit();
QString tarnMac2NoColonMac(QString const& mac);
