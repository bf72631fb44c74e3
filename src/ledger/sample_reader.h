#pragma once

#include <functional>
#include <string>

#include "base/calendar.h"
#include "base/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes the plain copy of an encrypted sample file beside it: Base64 text around a blob of the
/// data protection interface at machine scope. A file that cannot be read, decoded or opened, or is
/// larger than kLargestDataFileBytes, leaves no copy; nothing is logged.
/// Kept on purpose: always false, whatever happened; ask for the copy instead.
bool DecryptSampleFile(const std::wstring& path);

/// One day's samples from the data folder: decrypts that day's file, reads the plain copy and
/// deletes it. The caller owns the document: an empty array for a day without readable samples,
/// null for a copy that does not parse. `beforeDecrypting` gets the path of an encrypted file that
/// exists. Not safe beside another run for the same day. IsPlainFile's exception passes through.
GenericDocument* ReadSamplesOfDay(
    const std::wstring& folder, const DateTime& day,
    const std::function<void(const std::wstring& path)>& beforeDecrypting);

/// The same for a day whose encrypted file counts as gone: only a plain copy that an earlier
/// failure left behind is read, and deleted.
GenericDocument* ReadLeftoverCopyOfDay(const std::wstring& folder, const DateTime& day);

/// Deletes the plain copies of all days that lie in the folder; each is there only while its day is
/// being read, unless a process ended at that moment. Folders, links and files whose status cannot
/// be read stay. Not safe beside a reader.
void RemoveLeftoverCopies(const std::wstring& folder);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
