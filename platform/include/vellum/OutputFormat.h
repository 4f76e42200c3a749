// The output formats a command can be asked for; the numbers are the CLI's format codes.
#pragma once

#include <cstdint>

namespace vellum {

enum class OutputFormat_t : std::uint32_t {
   text = 1,
   json = 2,
};

}  // namespace vellum
