#include "hostsettings.h"

#include "fault.h"
#include "httpcabundle.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

bool toNumber(QString const& text, int min, int* out)
{
    bool ok = false;
    int const n = text.toInt(&ok);
    if (!ok || n < min)
        return false;
    *out = n;
    return true;
}

bool toBool(QString const& text, bool* out)
{
    QString const t = text.toLower();
    if (t.isEmpty() || t == QLatin1String("true") || t == QLatin1String("yes") || t == QLatin1String("1")) {
        *out = true;
        return true;
    }
    if (t == QLatin1String("false") || t == QLatin1String("no") || t == QLatin1String("0")) {
        *out = false;
        return true;
    }
    return false;
}

bool validMac(QString const& text)
{
    static QRegularExpression const mac(QStringLiteral("^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$"));
    return mac.match(text).hasMatch();
}

} // namespace

QVector<SettingSpec> const& settingSpecs()
{
    static QVector<SettingSpec> const specs{
        {"cloud", "URL", "Base URL of a real cloud (default: the simulated cloud, in-process)", true},
        {"secret", "S", "The device's shared secret with the cloud", true},
        {"ca-certificates", "FILE", "Trust only the CA certificates in this PEM file for an https cloud "
                                    "(default: the system's)", true},
        {"page-size", "N", "Rows the module fetches per page (default 25)", true},
        {"language", "LANG", "User interface language, e.g. de_DE (default en_US)", true},
        {"mac", "MAC", "Primary MAC address, AA:BB:CC:DD:EE:FF", true},
        {"model", "NAME", "Device model name (default tarn-host)", true},
        {"version", "V", "Device software version (default 1.0)", true},
        {"bitrate", "N", "Highest stream bitrate in kbit/s (default 10000000: no limit)", true},
        {"reset-required", "", "Start with the reset flag set", true},
        {"oauth-redirect", "URI", "The app's OAuth redirect URI", true},
        {"deezer-signup-link", "URL", "The page offered at a free account's skip limit "
                                      "(default https://signup.example/deezer)", true},
        {"block-cache-size", "BYTES", "Memory each thread of the module keeps of released answers for the next "
                                      "(default 1048576)", true},
        {"fault", "ROUTE=KIND", "Make the simulated cloud misbehave, e.g. /=delay:5000 (repeatable)", false},
        {"config", "FILE", "Read the settings above from an INI file; options win", false},
        {"log-level", "LEVEL", "trace, debug, info, warn or error (default warn)", true},
        {"log", "FILE", "Write the log to FILE instead of standard error", true},
        {"log-config", "FILE", "Configure logging from a log4cplus properties file", true},
        {"timeout", "SECONDS", "Give up waiting for a reply after this long (default 35)", false},
        {"json", "", "Print one JSON object per line instead of tables", false},
        {"module", "FILE", "Load this content module instead of the installed one", true},
    };
    return specs;
}

SettingSpec const* findSetting(QString const& name)
{
    for (auto const& spec : settingSpecs()) {
        if (spec.name == name)
            return &spec;
    }
    return nullptr;
}

bool applySetting(HostSettings* s, QString const& name, QString const& value, QString* error)
{
    PlatformValues& p = s->platform;
    bool ok = true;
    if (name == QLatin1String("cloud")) {
        p.baseUrl = value;
        s->cloudGiven = true;
        ok = value.startsWith(QLatin1String("http://")) || value.startsWith(QLatin1String("https://"));
    } else if (name == QLatin1String("ca-certificates")) {
        // Read now, so that a file that can't serve is bad usage and not a
        // failed request later; the transport reads it again when it uses it.
        HttpCaBundle const bundle = HttpCaBundle::read(value);
        if (!bundle.isValid()) {
            *error = QStringLiteral("bad value for ca-certificates: %1").arg(bundle.errorString());
            return false;
        }
        p.caCertificates = QFileInfo(value).absoluteFilePath();
    } else if (name == QLatin1String("secret")) {
        p.secret = value;
        s->secretGiven = true;
    } else if (name == QLatin1String("page-size")) {
        ok = toNumber(value, 1, &p.pageSize);
    } else if (name == QLatin1String("language")) {
        p.language = value;
    } else if (name == QLatin1String("mac")) {
        p.mac = value;
        ok = validMac(value);
    } else if (name == QLatin1String("model")) {
        p.modelName = value;
    } else if (name == QLatin1String("version")) {
        p.version = value;
    } else if (name == QLatin1String("bitrate")) {
        ok = toNumber(value, 1, &p.bitrate);
    } else if (name == QLatin1String("reset-required")) {
        ok = toBool(value, &p.resetRequired);
    } else if (name == QLatin1String("oauth-redirect")) {
        p.oauthRedirectUri = value;
    } else if (name == QLatin1String("deezer-signup-link")) {
        p.deezerSignUpLink = value;
    } else if (name == QLatin1String("block-cache-size")) {
        ok = toNumber(value, 0, &p.blockCacheSize);
    } else if (name == QLatin1String("fault")) {
        QString route;
        cloudsim::Fault fault;
        QString why;
        s->faults << value;
        if (!cloudsim::parseFault(value, &route, &fault, &why)) {
            *error = QStringLiteral("bad value for fault: '%1': %2").arg(value, why);
            return false;
        }
    } else if (name == QLatin1String("log-level")) {
        static QStringList const levels{"trace", "debug", "info", "warn", "error"};
        s->logLevel = value;
        ok = levels.contains(value);
    } else if (name == QLatin1String("module")) {
        s->modulePath = value;
    } else if (name == QLatin1String("log")) {
        s->logFile = value;
    } else if (name == QLatin1String("log-config")) {
        s->logConfig = value;
    } else if (name == QLatin1String("timeout")) {
        int seconds = 0;
        ok = toNumber(value, 1, &seconds);
        s->timeoutMs = seconds * 1000;
    } else if (name == QLatin1String("json")) {
        ok = toBool(value, &s->json);
    } else {
        *error = QStringLiteral("unknown setting %1").arg(name);
        return false;
    }
    if (!ok)
        *error = QStringLiteral("bad value for %1: '%2'").arg(name, value);
    return ok;
}
