// SPDX-License-Identifier: MIT

// The decoder of the unit's configuration block. The first byte of the input chooses the firmware
// generation, the rest is the block: zeros where it is too short.

#include "rotor/CDeviceParameters.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>
#include <memory>

namespace {

struct Generation
{
    float firmware;
    int words;
    int subnetMask;
    size_t blockSize;
};

constexpr Generation Old{2.5F, 10, 50, 67};
constexpr Generation New{3.0F, 12, 58, 75};

void RequireTheWordsOf(const uint8_t* block, int words, const CDeviceParameters& parameters)
{
    for (short motor = 0; motor < 2; ++motor) {
        for (int id = 0; id < words; ++id) {
            const uint8_t* const word = block + 2 * (motor * words + id);
            Require((parameters.*ParameterAccessors[id])(motor) == word[0] * 256 + word[1]);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Generation& generation = size == 0 || data[0] % 2 == 0 ? Old : New;
    // As long as the unit's answer and no longer, so that AddressSanitizer sees what goes beyond
    // it.
    const std::unique_ptr<uint8_t[]> block(new uint8_t[generation.blockSize]());
    if (size > 1) {
        std::copy_n(data + 1, std::min(size - 1, generation.blockSize), block.get());
    }
    const QString subnetMask =
        CDeviceParameters::FormatIpAddress(block.get() + generation.subnetMask);

    CDeviceParameters parameters(generation.firmware);
    Require(parameters.GetDeviceBlockSize() == generation.blockSize);
    parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(block.get()));

    RequireTheWordsOf(block.get(), generation.words, parameters);
    Require(parameters.GetSubnetMask() == subnetMask);
    return 0;
}
