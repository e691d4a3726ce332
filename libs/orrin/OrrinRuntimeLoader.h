#pragma once

#include <string>

namespace orrin
{

/** Why ONNX Runtime could not be loaded; empty if it could. Loads it if that was not tried yet. */
const std::string &runtimeLoadError() noexcept;

} // namespace orrin
