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

static char g_dir[PATH_MAX];
static size_t g_dirLen;
static long g_at;
static int g_kind; // 0 none, then SIGKILL, EIO or ENOSPC
static atomic_long g_count;
static int g_ready;

__attribute__((constructor)) static void faultInit(void)
{
    const char *dir = getenv("CV_FAULT_DIR"), *at = getenv("CV_FAULT_AT"),
               *kind = getenv("CV_FAULT_KIND");
    if (!dir || !*dir || !realpath(dir, g_dir))
        return;
    g_dirLen = strlen(g_dir);
    g_at = at ? atol(at) : 0;
    g_kind = !kind                     ? 0
             : !strcmp(kind, "kill")   ? SIGKILL
             : !strcmp(kind, "eio")    ? EIO
             : !strcmp(kind, "enospc") ? ENOSPC
                                       : 0;
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

// The target of a descriptor (or of a folder descriptor for *at calls) into out.
static int fdTarget(int fd, char *out, size_t size)
{
    char link[64];
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const ssize_t n = readlink(link, out, size - 1);
    if (n <= 0)
        return 0;
    out[n] = 0;
    return 1;
}

static int pathCounts(int dirfd, const char *path)
{
    if (!g_ready || !path)
        return 0;
    char full[2 * PATH_MAX + 2], base[PATH_MAX], real[PATH_MAX];
    if (path[0] == '/')
        snprintf(full, sizeof full, "%s", path);
    else if (dirfd == AT_FDCWD ? getcwd(base, sizeof base) != NULL
                               : fdTarget(dirfd, base, sizeof base))
        snprintf(full, sizeof full, "%s/%s", base, path);
    else
        return 0;
    // The folder itself was resolved; the file may not exist (yet, or any more).
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
    char target[PATH_MAX];
    if (!g_ready || fd < 0 || !fdTarget(fd, target, sizeof target))
        return 0;
    return underDir(target);
}

// Returns the errno the call must fail with, 0 to let it run.
static int countedPoint(int counts)
{
    if (!counts || atomic_fetch_add(&g_count, 1) + 1 != g_at || !g_kind)
        return 0;
    if (g_kind == SIGKILL)
        raise(SIGKILL);
    return g_kind;
}

// One wrapper: counts the call when `counts` holds, then fails it or runs the real one.
// dlsym gives an object pointer; memcpy turns it into the function pointer ISO C allows.
#define WRAP(ret, name, params, counts, args)                                                      \
    ret name params                                                                                \
    {                                                                                              \
        static __typeof__(&name) real;                                                             \
        if (!real) {                                                                               \
            void *sym = dlsym(RTLD_NEXT, #name);                                                   \
            memcpy(&real, &sym, sizeof sym);                                                       \
        }                                                                                          \
        const int err = countedPoint(counts);                                                      \
        if (err) {                                                                                 \
            errno = err;                                                                           \
            return -1;                                                                             \
        }                                                                                          \
        return real args;                                                                          \
    }

WRAP(ssize_t, write, (int fd, const void *buf, size_t n), fdCounts(fd), (fd, buf, n))
WRAP(ssize_t, pwrite, (int fd, const void *buf, size_t n, off_t off), fdCounts(fd),
     (fd, buf, n, off))
WRAP(ssize_t, pwrite64, (int fd, const void *buf, size_t n, off64_t off), fdCounts(fd),
     (fd, buf, n, off))
WRAP(ssize_t, writev, (int fd, const struct iovec *iov, int count), fdCounts(fd), (fd, iov, count))
WRAP(int, fsync, (int fd), fdCounts(fd), (fd))
WRAP(int, fdatasync, (int fd), fdCounts(fd), (fd))
WRAP(int, ftruncate, (int fd, off_t length), fdCounts(fd), (fd, length))
WRAP(int, ftruncate64, (int fd, off64_t length), fdCounts(fd), (fd, length))
WRAP(int, rename, (const char *from, const char *to),
     pathCounts(AT_FDCWD, from) || pathCounts(AT_FDCWD, to), (from, to))
WRAP(int, renameat, (int fromDir, const char *from, int toDir, const char *to),
     pathCounts(fromDir, from) || pathCounts(toDir, to), (fromDir, from, toDir, to))
WRAP(int, renameat2, (int fromDir, const char *from, int toDir, const char *to, unsigned flags),
     pathCounts(fromDir, from) || pathCounts(toDir, to), (fromDir, from, toDir, to, flags))
WRAP(int, unlink, (const char *path), pathCounts(AT_FDCWD, path), (path))
WRAP(int, unlinkat, (int dirfd, const char *path, int flags), pathCounts(dirfd, path),
     (dirfd, path, flags))
