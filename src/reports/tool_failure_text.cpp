#include "reports/tool_failure_text.h"

#include <stdexcept>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::wstring ToolFailureText(std::wstring_view literal, int status) {
  // Kept on purpose: a negative number of characters is a length that no text can have, and nobody
  // catches what that raises (test ToolFailureText.OfANegativeStatusIsAnErrorOfLength).
  if (status < 0) throw std::length_error("a text of a negative length");
  // Kept on purpose: the status is not printed in the place of "%d" but counts the characters (test
  // ToolFailureText.HasAsManyCharactersAsTheStatusSays).
  return std::wstring(literal.substr(0, static_cast<std::size_t>(status)));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
