// Runs a fuzz target without libFuzzer, so that any compiler builds it and ctest runs it: every
// file of the folders and files named on the command line, then a fixed number of mutations of
// them, the same every run. Fails on an input that takes longer than the time limit; a crash or
// a failed check ends the process, after the input has been saved for reproduction.
//
//   fuzz_<name>_check [--dict FILE] [--mutations N] [--seed N] [--timeout-ms N]
//                     [--save-prefix PATH] FOLDER|FILE...
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

// Under AddressSanitizer its own handlers report crashes; it calls back to save the input.
#if defined(__SANITIZE_ADDRESS__)
#define GR_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define GR_SANITIZED 1
#endif
#endif
#ifdef GR_SANITIZED
#include <sanitizer/common_interface_defs.h>
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) __attribute__((weak));

namespace {

using Bytes = std::vector<uint8_t>;

struct Input
{
    std::string label;
    Bytes bytes;
};

// What the signal handlers report: the input being run, and where to save it.
const Bytes *g_current = nullptr;
char g_label[512] = "";
char g_savePath[1024] = "fuzz-failure";

void writeAll(int fd, const void *data, size_t size)
{
    const char *p = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t n = write(fd, p, size);
        if (n <= 0)
            return;
        p += n;
        size -= size_t(n);
    }
}

void writeText(const char *text)
{
    writeAll(STDERR_FILENO, text, strlen(text));
}

// Only async-signal-safe calls: it runs from signal handlers and sanitizer reports.
void saveCurrentInput()
{
    if (!g_current)
        return;
    writeText("\nfailing input: ");
    writeText(g_label);
    const int fd = open(g_savePath, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd >= 0) {
        writeAll(fd, g_current->data(), g_current->size());
        close(fd);
        writeText("\nsaved as: ");
        writeText(g_savePath);
    }
    writeText("\n");
}

void onFatalSignal(int signal)
{
    saveCurrentInput();
    std::signal(signal, SIG_DFL);
    raise(signal);
}

void onAlarm(int)
{
    writeText("\nhang: an input ran far past the time limit");
    saveCurrentInput();
    _exit(1);
}

// splitmix64: small, and the same sequence whatever the compiler and library.
class Random
{
public:
    explicit Random(uint64_t seed) : m_state(seed) {}
    uint64_t next()
    {
        uint64_t z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    size_t below(size_t n) { return n == 0 ? 0 : size_t(next() % n); }

private:
    uint64_t m_state;
};

bool readFile(const std::filesystem::path &path, Bytes &bytes)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return false;
    bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return !file.bad();
}

// Every regular file under path (or path itself), sorted so that the run order is fixed. A
// folder that does not exist holds nothing: a harness may have no regressions yet.
bool collectInputs(const std::filesystem::path &path, std::vector<Input> &inputs)
{
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<fs::path> files;
    if (fs::is_directory(path, error)) {
        for (const auto &entry : fs::recursive_directory_iterator(path, error)) {
            if (entry.is_regular_file(error))
                files.push_back(entry.path());
        }
        std::sort(files.begin(), files.end());
    } else if (fs::exists(path, error)) {
        files.push_back(path);
    }
    for (const fs::path &file : files) {
        Input input{file.string(), {}};
        if (!readFile(file, input.bytes)) {
            std::fprintf(stderr, "can't read %s\n", file.c_str());
            return false;
        }
        inputs.push_back(std::move(input));
    }
    return true;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// libFuzzer's dictionary format: one "token" a line, optionally name="token", with \\, \" and
// \xNN escapes; # starts a comment.
bool readDictionary(const std::string &path, std::vector<Bytes> &tokens)
{
    std::ifstream file(path);
    if (!file) {
        std::fprintf(stderr, "can't read dictionary %s\n", path.c_str());
        return false;
    }
    std::string line;
    while (std::getline(file, line)) {
        const size_t open = line.find('"');
        const size_t close = line.rfind('"');
        if (line.empty() || line.front() == '#' || open == std::string::npos || close <= open)
            continue;
        Bytes token;
        for (size_t i = open + 1; i < close; ++i) {
            if (line[i] == '\\' && i + 3 < close && line[i + 1] == 'x' && hexValue(line[i + 2]) >= 0 &&
                hexValue(line[i + 3]) >= 0) {
                token.push_back(uint8_t(hexValue(line[i + 2]) * 16 + hexValue(line[i + 3])));
                i += 3;
            } else if (line[i] == '\\' && i + 1 < close) {
                token.push_back(uint8_t(line[++i]));
            } else {
                token.push_back(uint8_t(line[i]));
            }
        }
        if (!token.empty())
            tokens.push_back(std::move(token));
    }
    return true;
}

// One to four of libFuzzer's kinds of change: bit flips, random bytes, inserts, deletes, copies
// within the input, splices with another input and dictionary tokens.
Bytes mutate(Random &random, const std::vector<Input> &inputs, const std::vector<Bytes> &tokens,
             size_t maxSize)
{
    Bytes data = inputs.empty() ? Bytes() : inputs[random.below(inputs.size())].bytes;
    const size_t changes = 1 + random.below(4);
    for (size_t c = 0; c < changes; ++c) {
        const size_t at = random.below(data.size() + 1);
        switch (random.below(tokens.empty() ? 6 : 8)) {
        case 0:
            if (!data.empty())
                data[random.below(data.size())] ^= uint8_t(1u << random.below(8));
            break;
        case 1:
            if (!data.empty())
                data[random.below(data.size())] = uint8_t(random.next());
            break;
        case 2: {
            const size_t count = 1 + random.below(8);
            for (size_t i = 0; i < count; ++i)
                data.insert(data.begin() + std::ptrdiff_t(at), uint8_t(random.next()));
            break;
        }
        case 3: {
            const size_t count = std::min(data.size() - std::min(at, data.size()), 1 + random.below(16));
            data.erase(data.begin() + std::ptrdiff_t(at), data.begin() + std::ptrdiff_t(at + count));
            break;
        }
        case 4: {
            if (data.empty())
                break;
            const size_t from = random.below(data.size());
            const size_t count = 1 + random.below(std::min<size_t>(data.size() - from, 64));
            const Bytes part(data.begin() + std::ptrdiff_t(from),
                             data.begin() + std::ptrdiff_t(from + count));
            data.insert(data.begin() + std::ptrdiff_t(at), part.begin(), part.end());
            break;
        }
        case 5: {
            if (inputs.empty())
                break;
            const Bytes &other = inputs[random.below(inputs.size())].bytes;
            const size_t from = random.below(other.size() + 1);
            data.resize(at);
            data.insert(data.end(), other.begin() + std::ptrdiff_t(from), other.end());
            break;
        }
        case 6: {
            const Bytes &token = tokens[random.below(tokens.size())];
            data.insert(data.begin() + std::ptrdiff_t(at), token.begin(), token.end());
            break;
        }
        default: {
            const Bytes &token = tokens[random.below(tokens.size())];
            for (size_t i = 0; i < token.size() && at + i < data.size(); ++i)
                data[at + i] = token[i];
            break;
        }
        }
    }
    if (data.size() > maxSize)
        data.resize(maxSize);
    return data;
}

struct Totals
{
    size_t runs = 0;
    size_t slow = 0;
    double slowestMs = 0;
    std::string slowestLabel;
};

void runOne(const std::string &label, const Bytes &bytes, unsigned timeoutMs, Totals &totals)
{
    std::snprintf(g_label, sizeof g_label, "%s", label.c_str());
    g_current = &bytes;
    // A backstop for an input that never returns: the time check below would not be reached.
    alarm(timeoutMs / 1000 + 10);
    const auto start = std::chrono::steady_clock::now();
    // Never a null pointer, as with libFuzzer: an empty vector may have none.
    static const uint8_t empty = 0;
    LLVMFuzzerTestOneInput(bytes.empty() ? &empty : bytes.data(), bytes.size());
    const double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    alarm(0);
    ++totals.runs;
    if (ms > totals.slowestMs) {
        totals.slowestMs = ms;
        totals.slowestLabel = label;
    }
    if (ms > timeoutMs) {
        ++totals.slow;
        std::fprintf(stderr, "slow input (%.0f ms, limit %u ms): %s\n", ms, timeoutMs, label.c_str());
        saveCurrentInput();
    }
    g_current = nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    std::string dictionary;
    unsigned long mutations = 0;
    unsigned long long seed = 1;
    unsigned timeoutMs = 1000;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--dict" && hasValue)
            dictionary = argv[++i];
        else if (arg == "--mutations" && hasValue)
            mutations = std::strtoul(argv[++i], nullptr, 10);
        else if (arg == "--seed" && hasValue)
            seed = std::strtoull(argv[++i], nullptr, 10);
        else if (arg == "--timeout-ms" && hasValue)
            timeoutMs = unsigned(std::strtoul(argv[++i], nullptr, 10));
        else if (arg == "--save-prefix" && hasValue)
            std::snprintf(g_savePath, sizeof g_savePath, "%s", argv[++i]);
        else if (arg.rfind("--", 0) == 0) {
            std::fprintf(stderr, "unknown option %s\n", arg.c_str());
            return 2;
        } else {
            paths.push_back(arg);
        }
    }

    std::vector<Input> inputs;
    for (const std::string &path : paths) {
        if (!collectInputs(path, inputs))
            return 2;
    }
    std::vector<Bytes> tokens;
    if (!dictionary.empty() && !readDictionary(dictionary, tokens))
        return 2;

    std::signal(SIGABRT, onFatalSignal);
    std::signal(SIGALRM, onAlarm);
#ifdef GR_SANITIZED
    __sanitizer_set_death_callback(saveCurrentInput);
#else
    for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, onFatalSignal);
#endif
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);

    const auto start = std::chrono::steady_clock::now();
    Totals totals;
    size_t largest = 0;
    for (const Input &input : inputs) {
        largest = std::max(largest, input.bytes.size());
        runOne(input.label, input.bytes, timeoutMs, totals);
    }
    Random random(seed);
    const size_t maxSize = std::max<size_t>(largest * 2, 4096);
    for (unsigned long i = 0; i < mutations; ++i) {
        const Bytes data = mutate(random, inputs, tokens, maxSize);
        runOne("mutation " + std::to_string(i) + " of seed " + std::to_string(seed), data, timeoutMs, totals);
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%zu inputs (%zu files, %lu mutations) in %.1f s; slowest %.1f ms (%s)\n", totals.runs,
                inputs.size(), mutations, seconds, totals.slowestMs, totals.slowestLabel.c_str());
    if (totals.slow > 0) {
        std::printf("%zu inputs over the %u ms limit\n", totals.slow, timeoutMs);
        return 1;
    }
    return 0;
}
