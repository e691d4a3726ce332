#pragma once

struct OrtApiBase;

/**
 * Gives the table that ONNX Runtime is reached through. This library's own form of the function: the runtime itself is loaded when
 * the table is first asked for an interface, because it would cost every start milliseconds and megabytes, and most runs never look at
 * a picture. Never null.
 */
extern "C" [[gnu::visibility("default")]] const OrtApiBase *OrtGetApiBase() noexcept;

namespace orrin
{

/**
 * Where ONNX Runtime's function table is asked for, initialised when the library that includes this header is loaded. OrtGetApiBase is
 * thereby the only symbol of the runtime's interface that such a library needs.
 */
[[gnu::used]] inline const OrtApiBase *const runtimeApiBase = OrtGetApiBase();

} // namespace orrin
