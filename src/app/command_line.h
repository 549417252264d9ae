#pragma once

#include <QString>
#include <QStringList>

namespace quiv {

// What the command line asks for.
struct CommandLine {
    enum class Wish { Run, Help, Version, Diagnosis, Refusal };

    Wish wish = Wish::Run;
    QString problem{};       // of a refusal: one sentence
    QStringList files{};     // to upload: paths or addresses, as given
    bool isSeparate = false; // beside one that runs already

    bool operator==(const CommandLine&) const = default;
};

// Of the arguments behind the program's name. The first one that is not about running decides.
CommandLine parseCommandLine(const QStringList& arguments);

QString commandLineHelp();

} // namespace quiv
