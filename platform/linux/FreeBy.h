// SPDX-License-Identifier: MIT

#pragma once

namespace platform {

/// For a std::unique_ptr to what a library in C has made: its function Free frees it.
template<auto Free>
struct FreeBy
{
    template<typename T>
    void operator()(T* object) const
    {
        Free(object);
    }
};

} // namespace platform
