// SPDX-License-Identifier: GPL-3.0-or-later

// Sends damaged files through the whole reading of a file: to a confined child of a reader process, and back
// as its answer. Each file must give what it gives when it is read in this process. Without libFuzzer and
// sanitizers, whose run time a confined child ends: children are confined as those of the shipped program.
//
// Usage: fuzz_reader SECONDS SEED FINDS FOLDER...
//
// Damages files of the folders in an order that depends on SEED only. Files that give a difference are kept
// in the folder FINDS, as is the one that ends this program.
#include "imaging/codecs/jpeg_original.h"
#include "imaging/reading/picture_reading.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fuzz/small_pictures.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

using namespace complexion;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMaxBytes = 64 << 10;
/// Further files with a difference are only counted.
constexpr int kMaxFinds = 20;

/// A 64-bit linear congruential generator: the same numbers everywhere.
class Numbers {
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) {}
    /// At least 0, below `end`.
    std::size_t below(std::size_t end) {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>(m_state >> 33) % std::max<std::size_t>(end, 1);
    }

private:
    std::uint64_t m_state;
};

std::vector<std::string> filesOf(const std::vector<std::filesystem::path>& folders) {
    std::vector<std::filesystem::path> paths;
    for (const std::filesystem::path& folder : folders)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            if (entry.is_regular_file() && entry.file_size() <= kMaxBytes)
                paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::vector<std::string> files;
    for (const std::filesystem::path& path : paths)
        if (const Result<Bytes> bytes = readFile(path, isPictureFile))
            files.emplace_back(bytes->begin(), bytes->end());
    return files;
}

/// Damages `file` at one place; `other` is another file to take a piece from.
void damage(std::string& file, const std::string& other, Numbers& numbers) {
    constexpr std::array kExtremes = {'\x00', '\x01', '\x7f', '\x80', '\xfe', '\xff'};
    constexpr std::size_t kMaxPiece = 64;
    constexpr int kKinds = 7;
    if (file.empty())
        return;
    const std::size_t at = numbers.below(file.size());
    const std::size_t length = 1 + numbers.below(std::min(kMaxPiece, file.size() - at));
    switch (numbers.below(kKinds)) {
    case 0:
        file[at] = static_cast<char>(file[at] ^ 1 << numbers.below(8));
        return;
    case 1:
        file[at] = kExtremes[numbers.below(kExtremes.size())];
        return;
    case 2:
        file[at] = static_cast<char>(numbers.below(256));
        return;
    case 3:
        file.erase(at, length);
        return;
    case 4:
        file.insert(at, file.substr(at, length));
        return;
    case 5:
        file.replace(at, length, other.substr(numbers.below(other.size()), length));
        return;
    default:
        if (numbers.below(8) == 0) // rarely: little is left to decode
            file.resize(at);
    }
}

/// The file that an edit would be saved with; nothing if edits are not exact.
std::optional<Bytes> transcoded(const Image& image) {
    const auto original = image.encoderMemory().get<jpeg::OriginalFile>();
    if (!original)
        return std::nullopt;
    const Result<FileContents> file = original->encode(image);
    return file ? std::optional(file->joined()) : std::nullopt;
}

/// How a file that was read in a child differs from the same file read in this process; empty if it does not.
std::string differenceOf(const Result<FilePicture>& inChild, const Result<FilePicture>& here) {
    if (bool(inChild) != bool(here))
        return inChild ? "only the child opens it" : "the child does not open it: " + inChild.error().message;
    if (!here)
        return inChild.error().kind == here.error().kind ? "" : "another error: " + inChild.error().message;
    const Image& image = inChild->decoded.image;
    const Image& expected = here->decoded.image;
    if (!(image.size() == expected.size()) || !samePixels(image, expected))
        return "other pixels";
    if (image.deepAlpha() != expected.deepAlpha() || !(image.profile() == expected.profile()))
        return "other colours";
    if (inChild->decoded.damage.has_value() != here->decoded.damage.has_value())
        return "other damage";
    if (inChild->container != here->container || inChild->actualSize != here->actualSize ||
        inChild->losses != here->losses)
        return "another size, or other losses";
    // JPEG files inside files of another format are not transcoded.
    return inChild->container != Container::Jpeg || transcoded(image) == transcoded(expected)
               ? ""
               : "another transcoded file";
}

struct Counts {
    int files = 0;
    int pictures = 0;
    int differences = 0;
};

class Fuzzer {
public:
    Fuzzer(std::filesystem::path finds, std::shared_ptr<ReaderProcess> reader)
        : m_finds(std::move(finds)), m_path(m_finds / "reader-last"), m_reader(std::move(reader)) {}
    Fuzzer(const Fuzzer&) = delete;
    Fuzzer& operator=(const Fuzzer&) = delete;
    ~Fuzzer() { std::filesystem::remove(m_path); }

    void check(const std::string& file) {
        const Codec* const codec = codecForContent(viewOf(file));
        if (codec && !fuzz::isSmall(*codec, viewOf(file)))
            return;
        writeFile(m_path, file);
        installReader(m_reader);
        const Result<FilePicture> inChild = readPictureFile(m_path, ReadingPurpose::Edit);
        installReader(nullptr);
        const Result<FilePicture> here = readPictureFile(m_path, ReadingPurpose::Edit);
        const std::string difference = differenceOf(inChild, here);
        ++m_counts.files;
        if (here)
            ++m_counts.pictures;
        if (difference.empty())
            return;
        if (++m_counts.differences > kMaxFinds)
            return;
        const std::filesystem::path kept = m_finds / ("reader-" + std::to_string(m_counts.files));
        writeFile(kept, file);
        std::cout << kept.string() << ": " << difference << '\n';
    }

    const Counts& counts() const { return m_counts; }

private:
    std::filesystem::path m_finds;
    std::filesystem::path m_path; // kept if this program ends in `check`
    std::shared_ptr<ReaderProcess> m_reader;
    Counts m_counts;
};

} // namespace

// An exception ends the program, which is a find. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int count, char** words) {
    constexpr int kFirstFolder = 4;
    constexpr std::size_t kMaxPlaces = 6;
    if (count <= kFirstFolder) {
        std::cerr << "usage: fuzz_reader SECONDS SEED FINDS FOLDER...\n";
        return 2;
    }
    const Result<std::shared_ptr<ReaderProcess>> reader = ReaderProcess::start(answerReading);
    if (!reader) {
        std::cerr << "no reader process: " << reader.error().message << '\n';
        return 2;
    }
    const auto end = Clock::now() + std::chrono::seconds(std::atol(words[1]));
    Numbers numbers(std::strtoull(words[2], nullptr, 10));
    const std::vector<std::string> files = filesOf({words + kFirstFolder, words + count});
    Fuzzer fuzzer(words[3], *reader);
    while (Clock::now() < end && !files.empty()) {
        std::string file = files[numbers.below(files.size())];
        for (std::size_t places = 1 + numbers.below(kMaxPlaces); places > 0; --places)
            damage(file, files[numbers.below(files.size())], numbers);
        fuzzer.check(file);
    }
    const Counts& counts = fuzzer.counts();
    std::cout << "reader: " << counts.files << " files, " << counts.pictures << " pictures, "
              << (counts.differences == 0 ? "no difference"
                                          : std::to_string(counts.differences) + " differences")
              << '\n';
    return counts.differences == 0 && counts.files > 0 ? 0 : 1;
}
