// Fault injection for the reliability tests, loaded with LD_PRELOAD into one save.
//
// Counts the calls that change files under CV_FAULT_DIR (writes, syncs, truncates,
// renames, deletes) and, at the CV_FAULT_AT-th one (1-based), does what CV_FAULT_KIND
// says before the call runs: "kill" raises SIGKILL (a crash or power cut at that point),
// "eio" and "enospc" make the call fail with that errno. At exit the number of counted
// calls goes to the file CV_FAULT_COUNT, so a clean run tells how many points a save has.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

enum Kind { KindNone, KindKill, KindEio, KindEnospc };

static char g_dir[PATH_MAX];
static size_t g_dirLen;
static long g_at;
static enum Kind g_kind;
static atomic_long g_count;
static int g_ready;
static int g_trace;
static __thread char
    g_last[2 * PATH_MAX + 2]; // the file of the call being counted, for CV_FAULT_TRACE

__attribute__((constructor)) static void faultInit(void)
{
    const char *dir = getenv("CV_FAULT_DIR");
    if (!dir || !*dir || !realpath(dir, g_dir))
        return;
    g_dirLen = strlen(g_dir);
    const char *at = getenv("CV_FAULT_AT");
    g_at = at ? atol(at) : 0;
    const char *kind = getenv("CV_FAULT_KIND");
    g_kind = !kind                     ? KindNone
             : !strcmp(kind, "kill")   ? KindKill
             : !strcmp(kind, "eio")    ? KindEio
             : !strcmp(kind, "enospc") ? KindEnospc
                                       : KindNone;
    g_trace = getenv("CV_FAULT_TRACE") != NULL;
    g_ready = 1;
}

__attribute__((destructor)) static void faultReport(void)
{
    const char *out = getenv("CV_FAULT_COUNT");
    if (!g_ready || !out || !*out)
        return;
    g_ready = 0; // the report's own write is not a point
    FILE *f = fopen(out, "w");
    if (f) {
        fprintf(f, "%ld\n", atomic_load(&g_count));
        fclose(f);
    }
}

static int underDir(const char *path)
{
    return strncmp(path, g_dir, g_dirLen) == 0 && (path[g_dirLen] == '/' || !path[g_dirLen]);
}

static int pathCounts(int dirfd, const char *path)
{
    if (!g_ready || !path)
        return 0;
    char full[2 * PATH_MAX + 2];
    if (path[0] == '/') {
        snprintf(full, sizeof full, "%s", path);
    } else {
        char base[PATH_MAX];
        if (dirfd == AT_FDCWD) {
            if (!getcwd(base, sizeof base))
                return 0;
        } else {
            char link[64];
            snprintf(link, sizeof link, "/proc/self/fd/%d", dirfd);
            const ssize_t n = readlink(link, base, sizeof base - 1);
            if (n <= 0)
                return 0;
            base[n] = 0;
        }
        snprintf(full, sizeof full, "%s/%s", base, path);
    }
    // The folder itself was resolved; the file may not exist (yet, or any more).
    char real[PATH_MAX];
    snprintf(g_last, sizeof g_last, "%s", full);
    if (realpath(full, real))
        return underDir(real);
    char *slash = strrchr(full, '/');
    if (!slash)
        return 0;
    *slash = 0;
    return realpath(full[0] ? full : "/", real) && underDir(real);
}

static int fdCounts(int fd)
{
    if (!g_ready || fd < 0)
        return 0;
    char link[64], target[PATH_MAX];
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const ssize_t n = readlink(link, target, sizeof target - 1);
    if (n <= 0)
        return 0;
    target[n] = 0;
    snprintf(g_last, sizeof g_last, "%s", target);
    return underDir(target);
}

// Returns the errno the call must fail with, 0 to let it run.
static int countedPoint(const char *call, int counts)
{
    if (!counts)
        return 0;
    const long n = atomic_fetch_add(&g_count, 1) + 1;
    if (g_trace) {
        char line[2 * PATH_MAX + 64];
        const int len = snprintf(line, sizeof line, "POINT %ld %s %s\n", n, call, g_last);
        ssize_t (*raw)(int, const void *, size_t) = NULL;
        void *sym = dlsym(RTLD_NEXT, "write");
        memcpy(&raw, &sym, sizeof sym);
        if (raw && len > 0)
            raw(2, line, (size_t)len);
    }
    if (n != g_at)
        return 0;
    switch (g_kind) {
    case KindKill:
        raise(SIGKILL);
        return 0;
    case KindEio:
        return EIO;
    case KindEnospc:
        return ENOSPC;
    default:
        return 0;
    }
}

#define point__(counts) countedPoint(__func__, counts)

// dlsym gives an object pointer; memcpy turns it into the function pointer ISO C allows.
#define REAL(name)                                                                                 \
    static __typeof__(&name) real;                                                                 \
    if (!real) {                                                                                   \
        void *sym = dlsym(RTLD_NEXT, #name);                                                       \
        memcpy(&real, &sym, sizeof sym);                                                           \
    }
#define FAIL_OR(err, call)                                                                         \
    do {                                                                                           \
        if (err) {                                                                                 \
            errno = err;                                                                           \
            return -1;                                                                             \
        }                                                                                          \
        return call;                                                                               \
    } while (0)

ssize_t write(int fd, const void *buf, size_t n)
{
    REAL(write)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, buf, n));
}

ssize_t pwrite(int fd, const void *buf, size_t n, off_t off)
{
    REAL(pwrite)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, buf, n, off));
}

ssize_t pwrite64(int fd, const void *buf, size_t n, off64_t off)
{
    REAL(pwrite64)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, buf, n, off));
}

ssize_t writev(int fd, const struct iovec *iov, int count)
{
    REAL(writev)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, iov, count));
}

int fsync(int fd)
{
    REAL(fsync)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd));
}

int fdatasync(int fd)
{
    REAL(fdatasync)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd));
}

int ftruncate(int fd, off_t length)
{
    REAL(ftruncate)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, length));
}

int ftruncate64(int fd, off64_t length)
{
    REAL(ftruncate64)
    const int err = point__(fdCounts(fd));
    FAIL_OR(err, real(fd, length));
}

int rename(const char *from, const char *to)
{
    REAL(rename)
    const int err = point__(pathCounts(AT_FDCWD, from) || pathCounts(AT_FDCWD, to));
    FAIL_OR(err, real(from, to));
}

int renameat(int fromDir, const char *from, int toDir, const char *to)
{
    REAL(renameat)
    const int err = point__(pathCounts(fromDir, from) || pathCounts(toDir, to));
    FAIL_OR(err, real(fromDir, from, toDir, to));
}

int renameat2(int fromDir, const char *from, int toDir, const char *to, unsigned flags)
{
    REAL(renameat2)
    const int err = point__(pathCounts(fromDir, from) || pathCounts(toDir, to));
    FAIL_OR(err, real(fromDir, from, toDir, to, flags));
}

int unlink(const char *path)
{
    REAL(unlink)
    const int err = point__(pathCounts(AT_FDCWD, path));
    FAIL_OR(err, real(path));
}

int unlinkat(int dirfd, const char *path, int flags)
{
    REAL(unlinkat)
    const int err = point__(pathCounts(dirfd, path));
    FAIL_OR(err, real(dirfd, path, flags));
}
