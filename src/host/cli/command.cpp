#include "command.h"

#include "cmglobal.h"

namespace {

bool parseRoles(QString const& text, QStringList* roles, QString* error)
{
    QStringList const known = CMAllRoles();
    for (QString const& role : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        if (!known.contains(role)) {
            *error = QStringLiteral("unknown role '%1' (roles: %2)").arg(role, known.join(QLatin1Char(',')));
            return false;
        }
        *roles << role;
    }
    if (roles->isEmpty())
        *error = QStringLiteral("--roles needs at least one role");
    return !roles->isEmpty();
}

OptionSpec const* findOption(CommandSpec const& spec, QString const& name)
{
    for (auto const& option : spec.options) {
        if (option.name == name)
            return &option;
    }
    return nullptr;
}

} // namespace

QVector<CommandSpec> const& commandSpecs()
{
    static QVector<CommandSpec> const specs{
        {"ls", "ls [PATH] [FROM [TO]] [--roles a,b] [--no-follow]",
         "List rows FROM to TO (0-based, inclusive; default one page), following redirects; a dialog shows its "
         "fields and buttons, and a select field its options",
         0, 3, true, true, false, {}},
        {"get", "get PATH [--roles a,b]", "Read the roles of one path", 1, 1, true, false, false, {}},
        {"set", "set PATH ROLE VALUE",
         "Set a role of a path; VALUE is JSON, e.g. true or '\"text\"'. A field takes its value with set N value, "
         "a button or a menu's action is pressed with set N activate true, and the tool goes where it sends you",
         3, 3, false, false, false, {}},
        {"play", "play PATH [--tracks N]",
         "Play a row with the stand-in player, trying its other streams when one fails, then stop it; the events "
         "the simulated cloud heard are among the steps. A program plays N tracks in virtual time, and in the "
         "shell goes on playing for the player command",
         1, 1, false, false, false,
         {{"tracks", "N", "tracks of a program to play, one after the other (default 3)"}}},
        {"player", "player next|previous|pause|stop|like|dislike|status|menu",
         "Act on the program that plays now: skip, go back, pause or go on, stop, rate the track, say what "
         "plays, or show the playing track's menu",
         1, 1, false, false, true, {}},
        {"menu", "menu [N|PATH]",
         "Show the context menu of row N or of a path (without one, of the last listing): its text and its "
         "actions; carry one out with set N activate true, open a list with ls N",
         0, 1, false, false, false, {}},
        {"oauth", "oauth N|PATH [--flow browser|app] [--open]",
         "Log in on a service's own page through the login row N of the last listing (or the first of PATH's "
         "dialog): print the page's URL, wait for the browser to come back to this tool, and go where the "
         "dialog sends you",
         1, 1, false, false, false,
         {{"flow", "FLOW", "browser (default): come back to this tool; app: print the app's login URL and return"},
          {"open", "", "open the page with xdg-open"}}},
        {"watch", "watch PATH [--roles a,b]", "List a path, then print changes of its rows until interrupted",
         1, 1, true, false, false, {}},
        {"serve", "serve [--host ADDRESS] [--port N] [--allow-remote]",
         "Serve the web explorer: browse, log in and play in a browser, which is the player. On 127.0.0.1 "
         "port 8090 by default; another address than loopback needs --allow-remote",
         0, 0, false, false, false,
         {{"host", "ADDRESS", "the address to listen on (default 127.0.0.1)"},
          {"port", "N", "the port (default 8090; 0 takes a free one)"},
          {"allow-remote", "", "allow an address that other machines reach"}}},
        {"shell", "shell", "Read commands from a prompt, or one per line from standard input", 0, 0, false,
         false, false, {}},
        {"cd", "cd PATH|N", "Make a path, or row N of the last listing, the current one", 1, 1, false, false,
         true, {}},
        {"back", "back", "Return to the path before the last cd", 0, 0, false, false, true, {}},
        {"pwd", "pwd", "Print the current path", 0, 0, false, false, true, {}},
        {"next", "next", "List as many rows again, from the row after the last one shown", 0, 0, false, false,
         true, {}},
        {"help", "help [COMMAND]", "Describe the commands, or one of them", 0, 1, false, false, false, {}},
        {"quit", "quit", "Leave the shell", 0, 0, false, false, true, {}},
    };
    return specs;
}

CommandSpec const* findCommand(QString const& name)
{
    for (auto const& spec : commandSpecs()) {
        if (spec.name == name)
            return &spec;
    }
    return nullptr;
}

bool parseCommand(QStringList const& words, bool inShell, Command* command, QString* error)
{
    if (words.isEmpty()) {
        *error = QStringLiteral("no command given (try --help)");
        return false;
    }
    CommandSpec const* spec = findCommand(words.first());
    if (!spec || (spec->shellOnly && !inShell) || (inShell && spec->name == QLatin1String("shell"))) {
        *error = QStringLiteral("unknown command '%1' (try help)").arg(words.first());
        return false;
    }
    command->name = spec->name;
    bool optionsEnded = false;
    for (int i = 1; i < words.size(); ++i) {
        QString const& word = words[i];
        if (optionsEnded || !word.startsWith(QLatin1String("--"))) {
            command->args << word;
        } else if (word == QLatin1String("--")) {
            optionsEnded = true;
        } else if (word == QLatin1String("--help")) {
            command->help = true;
        } else if (spec->takesNoFollow && word == QLatin1String("--no-follow")) {
            command->follow = false;
        } else if (spec->takesRoles && (word == QLatin1String("--roles") || word.startsWith("--roles="))) {
            QString value = word.mid(8);
            if (word.size() == 7) {
                if (++i == words.size()) {
                    *error = QStringLiteral("--roles needs a value");
                    return false;
                }
                value = words[i];
            }
            if (!parseRoles(value, &command->roles, error))
                return false;
        } else if (OptionSpec const* option = findOption(*spec, word.mid(2).section(QLatin1Char('='), 0, 0))) {
            int const eq = word.indexOf(QLatin1Char('='));
            QString value = eq < 0 ? QStringLiteral("true") : word.mid(eq + 1);
            if (!option->valueName.isEmpty() && eq < 0) {
                if (++i == words.size()) {
                    *error = QStringLiteral("--%1 needs a value").arg(option->name);
                    return false;
                }
                value = words[i];
            } else if (option->valueName.isEmpty() && eq >= 0) {
                *error = QStringLiteral("--%1 takes no value").arg(option->name);
                return false;
            }
            command->options.insert(option->name, value);
        } else {
            *error = QStringLiteral("%1: unknown option '%2'").arg(spec->name, word);
            return false;
        }
    }
    if (command->help)
        return true;
    if (command->args.size() < spec->minArgs || command->args.size() > spec->maxArgs) {
        *error = QStringLiteral("usage: %1").arg(spec->synopsis);
        return false;
    }
    return true;
}
