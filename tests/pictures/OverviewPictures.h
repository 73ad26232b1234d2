// Pictures of the overview: its dialog in one look, and with the drawing beside it.
#pragma once

#include <QDir>
#include <QString>

#include <filesystem>

namespace velmor {

class Session;

/// The dialog over the session's drawing; the file's name ends with look.
bool overviewPicture(Session &session, const QDir &folder, const QString &look);
/// A branch highlighted in the drawing, with what is wrong listed.
bool overviewRoadPicture(const std::filesystem::path &drawing, const QDir &folder);

} // namespace velmor
