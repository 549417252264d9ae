#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

// What the names of files say about uploading them. Pure functions; letter case never counts.
namespace quiv {

// What follows the last dot of a name, lower-cased; empty without one.
QString lowerCasedExtension(const QString& name);

// Without dots, in lower case.
const QStringList& supportedVideoExtensions();
const QStringList& supportedSubtitleExtensions();
bool hasSupportedVideoExtension(const QString& name);
bool hasSupportedSubtitleExtension(const QString& name);

// What the duplicate rule compares.
QString uploadNameKey(const QString& name);

// Equal for names of the same upload: a TV that has the name already stores "Movie (2).mkv".
// Empty for a blank name, which is no upload's.
QString uploadMatchKey(const QString& name);
bool uploadNamesMatch(const QString& name, const QString& other);

// The name a subtitle gets when it is attached to a video: the video's, with its own extension.
QString proposedSubtitleRemoteName(const QString& videoName, const QUrl& subtitleURL);

} // namespace quiv
