// Replays fuzz inputs without the fuzzer: every file under the given directories (and every
// file given) goes twice through the target's LLVMFuzzerTestOneInput, as the fuzzer itself runs
// an input again after what the target kept from earlier ones. Built with the ordinary compiler,
// it runs in `make test`, so that each corpus file keeps being read without a crash.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    size_t replayed = 0;
    auto replay = [&replayed](const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in),
                                         std::istreambuf_iterator<char>()};
        for (int round = 0; round < 2; ++round)
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        ++replayed;
    };
    for (int i = 1; i < argc; ++i) {
        if (fs::is_directory(argv[i])) {
            for (const auto& entry : fs::recursive_directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    replay(entry.path());
        } else {
            replay(argv[i]);
        }
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
