// A file system over another folder that hangs or is slow when told to.
//
//   troubled_disk FOLDER MOUNT_POINT
//
// FOLDER/.trouble names the operation that hangs for as long as it is named there ("stat", "list",
// "open", "read", "create", "write", "sync", "rename"), or says "slow": 1 MB/s. FOLDER/.waiting
// tells that one hangs.

#define FUSE_USE_VERSION 31

#include <fuse.h>

#include <cerrno>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/statvfs.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

std::string folder;

std::string under(const char* path) {
    return folder + path;
}

std::string trouble() {
    std::ifstream file(folder + "/.trouble");
    std::string word;
    file >> word;
    return word;
}

// Returns false if whoever asked has given up.
bool pass(std::string_view operation, std::size_t bytes = 0) {
    if (trouble() == "slow")
        std::this_thread::sleep_for(1us * bytes);
    while (trouble() == operation) {
        std::ofstream(folder + "/.waiting").flush();
        std::this_thread::sleep_for(10ms);
        if (fuse_interrupted())
            return false;
    }
    return true;
}

int resultOf(long result) {
    return result < 0 ? -errno : int(result);
}

void* begin(fuse_conn_info*, fuse_config* config) {
    config->intr = 1;
    config->use_ino = 1;
    config->attr_timeout = config->entry_timeout = config->negative_timeout = 0;
    return nullptr;
}

int getAttributes(const char* path, struct stat* status, fuse_file_info*) {
    if (std::string_view(path) != "/" && !pass("stat"))
        return -EINTR;
    return resultOf(::lstat(under(path).c_str(), status));
}

int list(const char* path, void* buffer, fuse_fill_dir_t fill, off_t, fuse_file_info*,
         fuse_readdir_flags) {
    if (!pass("list"))
        return -EINTR;
    for (const auto& entry : std::filesystem::directory_iterator(under(path)))
        fill(buffer, entry.path().filename().c_str(), nullptr, 0, fuse_fill_dir_flags(0));
    return 0;
}

int openFile(const char* path, fuse_file_info* info) {
    if (!pass("open"))
        return -EINTR;
    info->direct_io = 1; // every read and write comes here
    const int descriptor = ::open(under(path).c_str(), info->flags);
    info->fh = std::uint64_t(descriptor);
    return descriptor < 0 ? -errno : 0;
}

int createFile(const char* path, mode_t mode, fuse_file_info* info) {
    if (!pass("create"))
        return -EINTR;
    info->direct_io = 1;
    const int descriptor = ::open(under(path).c_str(), info->flags, mode);
    info->fh = std::uint64_t(descriptor);
    return descriptor < 0 ? -errno : 0;
}

int readFile(const char*, char* buffer, std::size_t size, off_t offset, fuse_file_info* info) {
    return pass("read", size) ? resultOf(::pread(int(info->fh), buffer, size, offset)) : -EINTR;
}

int writeFile(const char*, const char* buffer, std::size_t size, off_t offset, fuse_file_info* info) {
    return pass("write", size) ? resultOf(::pwrite(int(info->fh), buffer, size, offset)) : -EINTR;
}

int synchronise(const char*, int, fuse_file_info*) {
    return pass("sync") ? 0 : -EINTR;
}

int renameFile(const char* from, const char* to, unsigned) {
    return pass("rename") ? resultOf(::rename(under(from).c_str(), under(to).c_str())) : -EINTR;
}

int removeFile(const char* path) {
    return resultOf(::unlink(under(path).c_str()));
}

int release(const char*, fuse_file_info* info) {
    return resultOf(::close(int(info->fh)));
}

int freeSpace(const char* path, struct statvfs* disk) {
    return resultOf(::statvfs(under(path).c_str(), disk));
}

} // namespace

int main(int, char* arguments[]) {
    folder = arguments[1];
    fuse_operations operations{};
    operations.init = begin;
    operations.getattr = getAttributes;
    operations.readdir = list;
    operations.open = openFile;
    operations.create = createFile;
    operations.read = readFile;
    operations.write = writeFile;
    operations.fsync = synchronise;
    operations.rename = renameFile;
    operations.unlink = removeFile;
    operations.release = release;
    operations.statfs = freeSpace;
    char* options[] = {arguments[0], const_cast<char*>("-f"), arguments[2], nullptr};
    return fuse_main(3, options, &operations, nullptr);
}
