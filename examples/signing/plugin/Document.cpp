#include "Document.h"

#include "Failure.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <glib.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

struct File {
    explicit File(const std::string& path)
        // A pipe without a writer would be waited for.
        : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(descriptor); }

    const int descriptor;
};

struct ChecksumDeleter {
    void operator()(GChecksum* checksum) const { g_checksum_free(checksum); }
};

Failure unreadable(const std::string& path, int error)
{
    return Failure(CKR_DATA_INVALID, path + ": " + strerror(error));
}

} // namespace

std::string digest_of_document(const std::string& path, const std::function<void(int)>& report)
{
    const File file(path);
    struct stat status = {};
    if (file.descriptor < 0 || fstat(file.descriptor, &status) != 0) {
        throw unreadable(path, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(CKR_DATA_INVALID, path + ": no regular file");
    }

    const std::unique_ptr<GChecksum, ChecksumDeleter> checksum(g_checksum_new(G_CHECKSUM_SHA256));
    std::vector<unsigned char> block(1U << 18U);
    off_t done = 0;
    ssize_t count = 0;
    while ((count = read(file.descriptor, block.data(), block.size())) > 0) {
        g_checksum_update(checksum.get(), block.data(), count);
        done += count;
        report(status.st_size > done ? static_cast<int>(100 * done / status.st_size) : 100);
    }
    if (count < 0) {
        throw unreadable(path, errno);
    }
    std::string digest(32, '\0');
    gsize size = digest.size();
    g_checksum_get_digest(checksum.get(), reinterpret_cast<guint8*>(digest.data()), &size);
    return digest;
}
