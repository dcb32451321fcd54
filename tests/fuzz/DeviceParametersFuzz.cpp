// The decoder of the unit's configuration block. The first byte of the input chooses the firmware
// generation, the rest is the block: zeros where it is too short.

#include "rotor/CDeviceParameters.h"
#include "tests/fuzz/FuzzTarget.h"

#include <QStringList>

#include <algorithm>
#include <memory>

namespace {

using Accessor = ushort (CDeviceParameters::*)(short) const;

constexpr Accessor Accessors[] = {
    &CDeviceParameters::GetSlowMotionDifference,
    &CDeviceParameters::GetMotionHangUpDifference,
    &CDeviceParameters::GetStepDifference,
    &CDeviceParameters::GetStepSleep,
    &CDeviceParameters::GetPulseDuration,
    &CDeviceParameters::GetMaxPositionDifference,
    &CDeviceParameters::GetMaxPositionFromRight,
    &CDeviceParameters::GetMaxPositionFromLeft,
    &CDeviceParameters::GetMaxMotionHangUpLoop,
    &CDeviceParameters::GetLoopsInside,
    &CDeviceParameters::GetSlowMotionSpeed,
    &CDeviceParameters::GetRotorType,
};

void RequireTheWordsOf(const uint8_t* block, const CDeviceParameters& parameters)
{
    const int count = parameters.GetParameterCount();
    for (short motor = 0; motor < 2; ++motor) {
        for (int id = 0; id < count; ++id) {
            const uint8_t* const word = block + 2 * (motor * count + id);
            Require((parameters.*Accessors[id])(motor) == word[0] * 256 + word[1]);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const bool old = size == 0 || data[0] % 2 == 0;
    CDeviceParameters parameters(old ? 2.5F : 3.0F);

    // As long as the unit's answer and no longer, so that AddressSanitizer sees what goes beyond
    // it.
    const size_t blockSize = parameters.GetDeviceBlockSize();
    const std::unique_ptr<uint8_t[]> block(new uint8_t[blockSize]());
    if (size > 1) {
        std::copy_n(data + 1, std::min(size - 1, blockSize), block.get());
    }
    parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(block.get()));

    RequireTheWordsOf(block.get(), parameters);
    Require(parameters.GetSubnetMask().split(QLatin1Char('.')).size() == 4);
    return 0;
}
