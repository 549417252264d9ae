#include "app/command_line.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// Options that the toolkit reads itself, each with a value: where to show the window, and what a
// session manager gives a program that it starts again.
bool isOfTheToolkit(QString option) {
    if (option.startsWith("--"_L1))
        option.remove(0, 1);
    return QStringList{u"-display"_s, u"-platform"_s, u"-session"_s}.contains(option);
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
    using enum CommandLine::Wish;
    CommandLine line;
    bool hasOptions = true;
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& argument = arguments[index];
        if (!hasOptions || !argument.startsWith(u'-')) {
            line.files.append(argument);
            continue;
        }
        if (argument == u"--") {
            hasOptions = false;
            continue;
        }
        if (argument == u"--separate") {
            line.isSeparate = true;
            continue;
        }
        if (argument == u"--help" || argument == u"-h")
            return {Help};
        if (argument == u"--version" || argument == u"-v")
            return {Version};
        if (argument == u"--diagnose")
            return {Diagnosis};
        if (!isOfTheToolkit(argument))
            return {Refusal, u"Unknown option: "_s + argument};
        if (++index == arguments.size())
            return {Refusal, u"A value is missing after "_s + argument};
    }
    return line;
}

QString commandLineHelp() {
    return uR"(Usage: quiv-controller [OPTION...] [FILE...]

Controls the Quiv TV app on the smart TVs and TV boxes of the local network. Files, videos and
subtitles, are uploaded to the TV that is selected, in the window that is open already.

Options:
  -h, --help             Tell this and end.
  -v, --version          Tell the version and end.
  --diagnose             Tell what a report of a fault needs, without anything private, and end.
  --separate             Open a window of its own even if one is open already.
  --platform NAME        Show the window there: wayland, xcb (X11).
  --display NAME         Show the window on that X11 display.
)"_s;
}

} // namespace quiv
