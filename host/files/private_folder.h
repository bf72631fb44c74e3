#pragma once

#include <string>

namespace WattleafHost {

/// Makes a new folder with a name of its own below the user's folder for temporary files. Only this
/// user, the system and administrators can enter it. Throws FileFailure if it cannot be made.
/// Before that, removes folders that killed processes of this user left there more than a day ago.
[[nodiscard]] std::wstring MakePrivateFolder();

/// Removes a folder with all that it holds. Links in it are removed, not followed. What cannot be
/// removed stays.
void RemoveFolderTree(const std::wstring& folder);

}  // namespace WattleafHost
