// SPDX-License-Identifier: GPL-3.0-or-later
// `quillabrae-codec`: one codec's work on behalf of the editor, then the end. See Protocol.h.
#include "codecs/Codecs.h"
#include "codecs/Protocol.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string_view>

namespace quillabrae::codecs {
namespace {

/// All of the input. Other processes may not change it meanwhile.
Bytes input() {
    struct stat facts {};
    if (::fstat(inputDescriptor, &facts) != 0 || facts.st_size <= 0)
        throw CodecError("there is no input");
    const auto size = static_cast<std::size_t>(facts.st_size);
    void* mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, inputDescriptor, 0);
    if (mapped == MAP_FAILED) throw CodecError("the input cannot be read");
    return {static_cast<const std::uint8_t*>(mapped), size};
}

void writeBytes(Bytes bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(outputDescriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) throw CodecError("the output cannot be written");
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

ByteOutput output() {
    return [](Bytes bytes) { writeBytes(bytes); };
}

class TellProgress {
public:
    void operator()(double fraction) {
        constexpr int whole = 100;
        constexpr std::array<char, whole> bytes{};
        const int due = std::clamp(static_cast<int>(fraction * whole), m_told, whole);
        // Nobody has to listen.
        if (due > m_told)
            m_told += static_cast<int>(std::max(
                ::write(progressDescriptor, bytes.data(), static_cast<std::size_t>(due - m_told)),
                ssize_t{0}));
    }

private:
    int m_told = 0;
};

class MappedPicture final : public PictureOutput {
public:
    std::span<std::uint8_t> begin(const PictureHeader& header) override {
        const PictureRecord record{
            header.width, header.height, static_cast<std::uint32_t>(header.alpha),
            static_cast<std::uint32_t>(header.colors), header.profile.size()};
        const std::size_t pixelBytes =
            static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height) * 4;
        const std::size_t size = sizeof record + pixelBytes + header.profile.size();
        if (::ftruncate(outputDescriptor, static_cast<off_t>(size)) != 0)
            throw CodecError("the output cannot be written");
        void* mapped =
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, outputDescriptor, 0);
        if (mapped == MAP_FAILED) throw CodecError("no memory");
        auto* bytes = static_cast<std::uint8_t*>(mapped);
        std::memcpy(bytes, &record, sizeof record);
        std::copy(header.profile.begin(), header.profile.end(), bytes + sizeof record + pixelBytes);
        return {bytes + sizeof record, pixelBytes};
    }
};

using Numbers = std::array<int, 3>;

OpaquePicture pictureOf(const Numbers& numbers) {
    const OpaquePicture picture{numbers[0], numbers[1], input()};
    checkSize(picture.width, picture.height);
    const auto pixels =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    if (picture.pixels.size() != pixels * 4) throw CodecError("the input has another size");
    return picture;
}

template <void (*read)(Bytes, PictureOutput&)>
void readPicture(const Numbers&) {
    // The size is not known yet.
    limitMemory(memoryToRead, 0);
    MappedPicture picture;
    try {
        read(input(), picture);
    } catch (const LimitError&) {
        // That there is no output says so.
    }
}

template <void (*write)(const OpaquePicture&, int, const ByteOutput&)>
void writePicture(const Numbers& numbers) {
    write(pictureOf(numbers), numbers[2], output());
}

void writeWebPPicture(const Numbers& numbers) {
    writeWebP(pictureOf(numbers), numbers[2], output(), TellProgress());
}

void writeGifPicture(const Numbers& numbers) {
    writeGif(pictureOf(numbers), output(), TellProgress());
}

void tellSvgSize(const Numbers&) {
    const DrawingSize size = sizeOfSvg(input());
    std::array<std::uint8_t, sizeof size> bytes{};
    std::memcpy(bytes.data(), &size, sizeof size);
    writeBytes(bytes);
}

void drawSvgPicture(const Numbers& numbers) {
    MappedPicture picture;
    drawSvg(input(), numbers[0], numbers[1], picture);
}

struct Verb {
    std::string_view name;
    int numbers;
    void (*run)(const Numbers&);
};

constexpr Verb verbs[] = {
    {"write-heic", 3, writePicture<writeHeic>},
    {"write-webp", 3, writeWebPPicture},
    {"write-jpeg2000", 3, writePicture<writeJpeg2000>},
    {"write-gif", 2, writeGifPicture},
    {"read-heif", 0, readPicture<readHeif>},
    {"read-jpeg2000", 0, readPicture<readJpeg2000>},
    {"svg-size", 0, tellSvgSize},
    {"draw-svg", 2, drawSvgPicture},
};

int run(std::span<char*> arguments) {
    const auto verb = std::ranges::find(
        verbs, arguments.empty() ? std::string_view() : std::string_view(arguments[0]),
        &Verb::name);
    if (verb == std::end(verbs) || static_cast<int>(arguments.size()) != verb->numbers + 1) {
        std::fputs("quillabrae-codec is a part of Quillabrae that starts it by itself.\n", stderr);
        return EXIT_FAILURE;
    }
    Numbers numbers{};
    for (std::size_t i = 1; i < arguments.size(); ++i)
        numbers.at(i - 1) = static_cast<int>(std::strtol(arguments[i], nullptr, 10));
    try {
        verb->run(numbers);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillabrae-codec: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace quillabrae::codecs

int main(int argc, char** argv) {
    // It serves the one who started it, and ends with it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const int status =
        quillabrae::codecs::run({argv + 1, static_cast<std::size_t>(std::max(argc - 1, 0))});
    // There is nothing to tidy up that the end of the process does not.
    ::_exit(status);
}
