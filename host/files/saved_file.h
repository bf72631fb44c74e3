#pragma once

#include <string>

namespace WattleafHost {

/// Writes a file as a whole: into a new file beside it, which then takes its name. A reader sees
/// the old content or the new one, never a part. `path` is UTF-8. Throws FileFailure if the file
/// cannot be written; then an existing one stays as it was.
void SaveFile(const std::string& path, const std::string& content);

}  // namespace WattleafHost
