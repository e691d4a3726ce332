#pragma once

#include <functional>
#include <string>

namespace orrin
{

enum class LogLevel { Info, Warning };

/** Receives one line without a line break at its end. Called on the thread that works; must not throw. */
using LogCallback = std::function<void(LogLevel, const std::string &)>;

} // namespace orrin
