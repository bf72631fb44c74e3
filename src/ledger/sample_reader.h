#pragma once

#include <functional>
#include <string>

#include "base/calendar.h"
#include "ledger/recent_samples.h"

// Reading the sample files of a data folder. A plain copy exists only while its day is being read,
// so no two of these operations may run on one folder at the same time: the caller holds a lock.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes the plain copy of an encrypted sample file beside it. The file is Base64 text
/// (CryptStringToBinaryA) around a blob of the data protection interface at machine scope
/// (CryptUnprotectData), at most kLargestDataFileBytes long. If a step before the writing fails, an
/// older copy stays as it was. Nothing is logged. Kept on purpose: the result is always false, so
/// callers look for the copy instead.
[[nodiscard]] bool DecryptSampleFile(const std::wstring& path);

/// The same, except that a file with the text of one in `recent` is not decrypted again. Keeps the
/// file in `recent` if it could be decrypted.
[[nodiscard]] bool DecryptSampleFile(const std::wstring& path, RecentSamples& recent);

/// What is done with a plain copy, by its path. It is deleted afterwards, also after an exception,
/// which propagates.
using PlainCopyUse = std::function<void(const std::wstring& path)>;

/// Decrypts one day's sample file and passes the plain copy to `use`. False, without a call of
/// `use`, for a day without readable samples. `decrypt` is called with the path of an encrypted
/// file that exists, and calls DecryptSampleFile. IsPlainFile's exception propagates.
[[nodiscard]] bool UseSamplesOfDay(const std::wstring& folder, const DateTime& day,
                                   const std::function<void(const std::wstring& path)>& decrypt,
                                   const PlainCopyUse& use);

/// The same for a day whose encrypted file counts as deleted: uses and deletes only a plain copy
/// that an earlier failure left.
[[nodiscard]] bool UseLeftoverCopyOfDay(const std::wstring& folder, const DateTime& day,
                                        const PlainCopyUse& use);

/// Deletes the plain copies of all days in the folder; a process that ended while it read a day has
/// left that day's. Folders, links and files whose status cannot be read stay. Failure to delete is
/// ignored.
void RemoveLeftoverCopies(const std::wstring& folder);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
