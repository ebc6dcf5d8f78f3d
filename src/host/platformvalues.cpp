#include "platformvalues.h"

#include "cmroot.h"
#include "tarnconstants.h"

namespace {
TarnValue text(QString const& s)
{
    return TarnValue().setString_(s);
}
} // namespace

void PlatformValues::apply() const
{
    auto* root = CMRootWorker::instance();
    TarnAirableConfig config;
    config.setBaseUrl(baseUrl).setSecret(secret).setPageSize(pageSize);
    root->putValue(TarnAirableConfigPath(), TarnValue().setAirableConfig(config));
    root->putValue(TarnSystemModelNamePath(), text(modelName));
    root->putValue(TarnSystemVersionPath(), text(version));
    root->putValue(TarnUILanguagePath(), text(language));
    root->putValue(TarnAirableStreamBitratePath(),
                   TarnValue().setAirableStreamBitrate(TarnAirableStreamBitrate::Enum(bitrate)));
    root->putValue(TarnSystemPrimaryMacAddressPath(), text(mac));
    root->putValue(CMPath::fromPrefixWithBase(TarnAirableResetRequired()), TarnValue().setBool_(resetRequired));
    root->putValue(TarnOAuth2AppRedirectUriPath(), text(oauthRedirectUri));
    root->putValue(TarnAirableDeezerSignUpLinkPath(), text(deezerSignUpLink));
    root->putValue(TarnSystemCaCertificatesPath(), text(caCertificates));
    root->putValue(TarnAirableBlockCacheSizePath(), TarnValue().setInt_(blockCacheSize));
    root->putValue(TarnPlayerStoppedPlayingState(), text(QString()));
}
