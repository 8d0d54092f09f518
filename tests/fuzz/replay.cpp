// Replays every file of the folders given (their own files, not those of folders inside them)
// through a fuzz target's LLVMFuzzerTestOneInput, as libFuzzer replays a corpus, with any
// compiler: what a campaign found stays found by the test command. A target's oracle aborts on
// a broken promise, which fails the test; an empty folder fails it too, so a corpus that went
// missing is seen.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv)
{
    namespace fs = std::filesystem;
    for (int arg = 1; arg < argc; ++arg) {
        std::vector<fs::path> inputs;
        for (const fs::directory_entry &entry : fs::directory_iterator(argv[arg])) {
            if (entry.is_regular_file())
                inputs.push_back(entry.path());
        }
        std::sort(inputs.begin(), inputs.end());
        if (inputs.empty()) {
            std::fprintf(stderr, "%s: no inputs to replay\n", argv[arg]);
            return 1;
        }
        for (const fs::path &input : inputs) {
            std::ifstream file(input, std::ios::binary);
            const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
            std::fprintf(stderr, "%s\n", input.c_str()); // the last one named is the one that failed
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
        }
        std::printf("%s: %zu inputs replayed\n", argv[arg], inputs.size());
    }
    return 0;
}
