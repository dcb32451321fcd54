// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

namespace simulator::platform {

/// The program's standard input, read beside everything else that the event loop does.
class StandardInput
{
public:
    /// From here on `take` gets each byte, one in a turn of the event loop, until the input or this
    /// object ends. `ended` is called once, at the end of the input. Where there is no input, it is
    /// called at once.
    StandardInput(const std::function<void(char)>& take, const std::function<void()>& ended);
    ~StandardInput();
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

private:
    class Source;
    const std::unique_ptr<Source> source;
};

} // namespace simulator::platform
