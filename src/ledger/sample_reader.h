#pragma once

#include <functional>
#include <string>

#include "ledger/date_time.h"
#include "ledger/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// One day's samples from the data folder: decrypts that day's file, reads the plain copy and
/// deletes it. The caller owns the document: an empty array for a day without readable samples,
/// null for a copy that does not parse. `beforeDecrypting` is told the path of an encrypted file
/// that is there. Not safe beside another run for the same day. IsPlainFile's exception passes
/// through.
GenericDocument* ReadSamplesOfDay(
    const std::wstring& folder, const DateTime& day,
    const std::function<void(const std::wstring& path)>& beforeDecrypting);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
