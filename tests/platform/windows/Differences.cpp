// SPDX-License-Identifier: MIT

#include "tests/platform/contract/Differences.h"

#include <map>

#include <windows.h>

namespace {

// Of wine 8.0, whose calls for these are there but do nothing. Windows itself is given no leave.
const std::map<std::string, std::string> DifferencesOfWine{
    {"a refused deletion gives an error number",
        "wine's DeleteIpNetEntry answers 0 and deletes nothing"},
    {"a neighbour that the table knows is resolved to its physical address",
        "wine's SendARP answers ERROR_NOT_SUPPORTED (50) to every address"},
};

bool IsWine()
{
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    return system != nullptr && GetProcAddress(system, "wine_get_version") != nullptr;
}

} // namespace

std::string WhyThisSystemDiffers(const std::string& sentence)
{
    const auto found = DifferencesOfWine.find(sentence);
    return IsWine() && found != DifferencesOfWine.end() ? found->second : std::string();
}
