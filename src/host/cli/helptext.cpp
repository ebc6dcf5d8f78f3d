#include "helptext.h"
#include "hostsettings.h"

namespace {

QString commandLines(bool inShell)
{
    QString text;
    for (auto const& spec : commandSpecs()) {
        if (spec.shellOnly && !inShell)
            continue;
        // A session can't start another session, nor a server.
        if (inShell && (spec.name == QLatin1String("shell") || spec.name == QLatin1String("serve")))
            continue;
        text += QStringLiteral("  %1\n      %2\n").arg(spec.synopsis, spec.summary);
    }
    return text;
}

} // namespace

QString toolHelp()
{
    QString text = QStringLiteral(
        "Usage: tarn-host [OPTIONS] COMMAND [ARGS]\n"
        "Browse, read, write and play the cloud content tree from a terminal.\n"
        "Without --cloud, a simulated cloud with a sample catalogue runs in-process.\n"
        "\nCommands:\n");
    text += commandLines(false);
    text += QStringLiteral("\nOptions:\n");
    for (auto const& spec : settingSpecs()) {
        QString const option = spec.valueName.isEmpty() ? QStringLiteral("--%1").arg(spec.name)
                                                        : QStringLiteral("--%1 %2").arg(spec.name, spec.valueName);
        text += QStringLiteral("  %1\n      %2\n").arg(option, spec.help);
    }
    text += QStringLiteral(
        "  -h, --help\n      This text; COMMAND --help describes one command\n"
        "\nPATH is a tree path such as airable:http://host/airable/radios; without a prefix it is\n"
        "taken below airable:, a path starting with / below the cloud's base URL, and / alone\n"
        "is the root. Exit status: 0 success, 1 error reply, 2 bad usage.\n");
    return text;
}

QString commandHelp(CommandSpec const& spec)
{
    QString text = QStringLiteral("Usage: %1\n%2\n").arg(spec.synopsis, spec.summary);
    if (spec.takesRoles)
        text += QStringLiteral("  --roles a,b   roles to ask for (default: all)\n");
    if (spec.takesNoFollow)
        text += QStringLiteral("  --no-follow   show a redirect instead of following it\n");
    for (auto const& option : spec.options) {
        QString const name = option.valueName.isEmpty() ? QStringLiteral("--%1").arg(option.name)
                                                        : QStringLiteral("--%1 %2").arg(option.name, option.valueName);
        text += QStringLiteral("  %1   %2\n").arg(name.leftJustified(11), option.help);
    }
    if (!spec.shellOnly && spec.name != QLatin1String("shell") && spec.name != QLatin1String("help")
        && spec.name != QLatin1String("serve"))
        text += QStringLiteral("In the shell, PATH may be N, the row numbered N in the last listing.\n");
    return text;
}

QString shellHelp()
{
    return QStringLiteral("Commands (N is a row number of the last listing):\n") + commandLines(true)
        + QStringLiteral("Ctrl-C clears the line, or gives up waiting for an answer.\n");
}
