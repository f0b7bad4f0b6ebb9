// SPDX-License-Identifier: MIT
// Runs a fuzz target over files and folders of inputs, in builds without a fuzzer. An input that
// violates a property aborts the process, as it would under the fuzzer.

#include "FuzzTarget.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::size_t replay(const std::filesystem::path& path)
{
    if (std::filesystem::is_directory(path)) {
        std::size_t inputs = 0;
        for (const auto& entry : std::filesystem::directory_iterator{path})
            inputs += replay(entry.path());
        return inputs;
    }
    std::ifstream file{path, std::ios::binary};
    const std::vector<char> input{std::istreambuf_iterator<char>{file}, {}};
    std::cerr << path.string() << '\n'; // the last line printed if this input fails
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t inputs = 0;
    for (int i = 1; i < argc; ++i)
        inputs += replay(argv[i]);
    std::cerr << inputs << " inputs\n";
    return inputs == 0 ? EXIT_FAILURE : EXIT_SUCCESS; // a wrong path on the command line
}
