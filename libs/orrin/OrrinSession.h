#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "OrrinModelSource.h"
#include "orrin_export.h"

namespace orrin
{

/**
 * One model loaded into ONNX Runtime. Operations that fail return false or null and say why in @p error. Not thread-safe; the
 * runtime's environment is shared by all sessions of the process.
 */
class ORRIN_EXPORT Session
{
public:
    enum class ElementType { Other, Float, Byte };

    struct TensorInfo
    {
        std::string name;
        ElementType type = ElementType::Other;
        /** A size that the model leaves open is -1. */
        std::vector<std::int64_t> shape;
    };

    /** Whether this process has a runtime that models can run on; if not, load() tells why. */
    static bool isRuntimeUsable();
    static std::unique_ptr<Session> load(const ModelSource &source, const std::string &file, int threads, std::string &error);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const std::vector<TensorInfo> &inputs() const { return m_inputs; }
    const std::vector<TensorInfo> &outputs() const { return m_outputs; }

    /** Every run() reads its only input from @p data, which stays the caller's and must outlive the session. */
    bool bindInput(const std::string &name, ElementType type, void *data, std::size_t bytes, const std::vector<std::int64_t> &shape,
        std::string &error);
    /** Fills one list of values for each name; outputs must be floats. */
    bool run(const std::vector<std::string> &outputNames, std::vector<std::vector<float>> &values, std::string &error);

private:
    struct Private;
    explicit Session(std::unique_ptr<Private> d);

    std::unique_ptr<Private> d;
    std::vector<TensorInfo> m_inputs;
    std::vector<TensorInfo> m_outputs;
};

} // namespace orrin
