#pragma once

#if defined(ORRIN_HAS_ONNXRUNTIME)

struct OrtApiBase;
extern "C" const OrtApiBase *OrtGetApiBase() noexcept;

namespace orrin
{

/**
 * Where ONNX Runtime's function table is asked for. Initialised when the library that includes this header is loaded, so that a missing
 * or foreign runtime shows at load and not in the middle of a run. OrtGetApiBase is thereby the only symbol of ONNX Runtime
 * that such a library needs.
 */
[[gnu::used]] inline const OrtApiBase *const runtimeApiBase = OrtGetApiBase();

} // namespace orrin

#endif
