"""Existing files as outputs on Linux: rights, owner and links of a replaced file, and files that stay."""
import os
import stat
import struct
import subprocess

from command import CommandTest

OTHER_ID = 65534
ACCESS_LIST = "system.posix_acl_access"
DEFAULT_LIST = "system.posix_acl_default"
OWNER, USER, GROUP, MASK, OTHER = 1, 2, 4, 16, 32
NO_ID = 0xFFFFFFFF


def access_list(*entries):
    """An access list in the kernel's form, of (kind, rights, id)."""
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries)


# User 1234 has more rights than the group.
PRIVATE_LIST = access_list((OWNER, 6, NO_ID), (USER, 6, 1234), (GROUP, 0, NO_ID), (MASK, 6, NO_ID), (OTHER, 0, NO_ID))


class RightsTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.write("in", b"text")

    def old(self, mode, owner=-1, group=-1):
        (self.folder / "old").unlink(missing_ok=True)
        path = self.folder / self.write("old", b"precious")
        os.chown(path, owner, group)
        path.chmod(mode)
        return path

    def replaced(self, **options):
        """The state of the file after the command has replaced it."""
        self.run_well("hex", "--force", "-o", "old", "in", **options)
        self.assertEqual(self.read("old"), b"74657874\n")
        return (self.folder / "old").stat()

    def require_root(self):
        self.assertEqual(os.geteuid(), 0, "only root gives files away and runs a program as another user: run as root")

    def test_the_owner_and_the_group_stay(self):
        self.require_root()
        self.old(0o640, 1234, 4321)
        state = self.replaced()
        self.assertEqual((state.st_uid, state.st_gid, stat.S_IMODE(state.st_mode)), (1234, 4321, 0o640))

    def test_another_group_gets_no_more_than_everyone_had(self):
        self.require_root()
        self.folder.chmod(0o777)
        for mode, expected in ((0o664, 0o644), (0o640, 0o600), (0o604, 0o600), (0o666, 0o666)):
            self.old(mode, 0, 0)
            (self.folder / "in").chmod(0o644)
            state = self.replaced(user=OTHER_ID, group=OTHER_ID, extra_groups=[])
            self.assertEqual((state.st_uid, state.st_gid), (OTHER_ID, OTHER_ID))
            self.assertEqual(oct(stat.S_IMODE(state.st_mode)), oct(expected), oct(mode))

    def test_set_user_id_is_dropped(self):
        self.old(0o6755)
        self.assertEqual(oct(stat.S_IMODE(self.replaced().st_mode)), oct(0o755))

    def test_the_access_list_stays(self):
        path = self.old(0o600)
        os.setxattr(path, ACCESS_LIST, PRIVATE_LIST)
        self.replaced()
        self.assertEqual(os.getxattr(path, ACCESS_LIST), PRIVATE_LIST)

    def test_without_its_group_the_access_list_grants_nothing(self):
        self.require_root()
        self.folder.chmod(0o777)
        path = self.old(0o644, 0, 0)
        (self.folder / "in").chmod(0o644)
        os.setxattr(path, ACCESS_LIST, access_list((OWNER, 6, NO_ID), (USER, 6, 1234), (GROUP, 0, NO_ID),
                                                   (MASK, 6, NO_ID), (OTHER, 4, NO_ID)))
        state = self.replaced(user=OTHER_ID, group=OTHER_ID, extra_groups=[])
        self.assertEqual(oct(stat.S_IMODE(state.st_mode)), oct(0o600))

    def test_the_folders_default_list_is_not_added(self):
        path = self.old(0o640)
        os.setxattr(self.folder, DEFAULT_LIST, PRIVATE_LIST)
        self.assertEqual(oct(stat.S_IMODE(self.replaced().st_mode)), oct(0o640))
        self.assertNotIn(ACCESS_LIST, os.listxattr(path))

    def test_a_plaintext_is_private_with_any_list(self):
        path = self.old(0o600)
        os.setxattr(path, ACCESS_LIST, PRIVATE_LIST)
        self.run_well("decrypt", "--hash", "md5", "--cipher", "rc4", "--no-password", "--force", "-o", "old", "in")
        self.assertEqual(oct(stat.S_IMODE(path.stat().st_mode)), oct(0o600))
        self.assertNotIn(ACCESS_LIST, os.listxattr(path))


class LinkTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.write("in", b"A")
        self.link = self.folder / "link"

    def test_a_link_stays_and_its_target_is_replaced(self):
        (self.folder / "folder").mkdir()
        self.write("folder/target", b"old")
        (self.folder / "folder" / "second").symlink_to("target")
        self.link.symlink_to("folder/second")
        self.assertEqual(self.run_command("hex", "-o", "link", "in").status, 1)
        self.run_well("hex", "--force", "-o", "link", "in")
        self.assertTrue(self.link.is_symlink())
        self.assertEqual(self.read("folder/target"), b"41\n")

    def test_a_link_to_nothing_stays_and_is_refused(self):
        for target, reason in (("nowhere", "No such file or directory"), ("none/out", "No such file or directory"),
                               ("link", "Too many levels of symbolic links"), ("in/out", "Not a directory")):
            self.link.symlink_to(target)
            for force in ([], ["--force"]):
                with self.start_command("hex", *force, "-o", "link", stdin=subprocess.PIPE,
                                        stderr=subprocess.PIPE) as process:  # refused before any data is written
                    self.assertEqual(process.stderr.read(),
                                     f"latchkey: cannot follow the link: {reason}: link\n".encode())
                self.assertEqual((process.returncode, self.names()), (1, ["in", "link"]))
                self.assertEqual(os.readlink(self.link), target)
            self.link.unlink()


class SwappedDeviceTest(CommandTest):
    """A name that denoted the null device and another file when it was opened."""
    LIBRARY = r"""
    #include <dlfcn.h>
    #include <fcntl.h>
    #include <stdarg.h>
    #include <stdio.h>
    #include <string.h>
    static int opened(const char* call, const char* name, int flags, unsigned mode) {
      if (strcmp(name, "out") == 0) rename("other", "out");
      return ((int (*)(const char*, int, ...))dlsym(RTLD_NEXT, call))(name, flags, mode);
    }
    #define REPLACE(call) \
      int call(const char* name, int flags, ...) { \
        va_list rest; \
        va_start(rest, flags); \
        const unsigned mode = flags & O_CREAT ? va_arg(rest, unsigned) : 0; \
        va_end(rest); \
        return opened(#call, name, flags, mode); \
      }
    REPLACE(open)
    REPLACE(open64)
    REPLACE(__open_2)  /* with the C library's checks */
    REPLACE(__open64_2)
    """

    def run_swapped(self, make, *more):
        """The result, with `out` a link to the null device that the file of `make` replaces when `out` is opened."""
        (self.folder / "out").symlink_to("/dev/null")
        make(self.folder / "other")
        result = self.run_command("hex", *more, "-o", "out", data=b"A",
                                  environment={"LD_PRELOAD": str(self.folder / ".swap.so")})
        self.assertEqual(self.names(), [".swap.so", "out"])  # it was replaced
        return result

    def test_no_other_file_is_written_without_force(self):
        subprocess.run(["cc", "-shared", "-fPIC", "-D_GNU_SOURCE", "-o", self.folder / ".swap.so", "-x", "c", "-"],
                       input=self.LIBRARY.encode(), check=True)
        for make, reason in ((lambda path: path.write_bytes(b"precious"), "cannot create: File exists"),
                             (lambda path: path.symlink_to("/dev/full"), "cannot create: File exists"),
                             (os.mkfifo, "cannot write: No such device or address")):  # it has no reader
            result = self.run_swapped(make)
            self.assertEqual((result.status, result.lines[0]), (1, f"latchkey: {reason}: out"))
            if (self.folder / "out").is_file():
                self.assertEqual(self.read("out"), b"precious")
            (self.folder / "out").unlink()
        result = self.run_swapped(lambda path: path.write_bytes(b"precious"), "--force")
        self.assertEqual((result.status, self.read("out")), (1, b"precious"))


class OldSystemTest(CommandTest):
    """A file system that cannot refuse a name in the call that renames (NFS, many in user space)."""
    LIBRARY = r"""
    #define _GNU_SOURCE
    #include <errno.h>
    #include <fcntl.h>
    #include <stdio.h>
    #include <stdlib.h>
    #include <unistd.h>
    int renameat2(int a, const char* from, int b, const char* to, unsigned flags) { errno = EINVAL; return -1; }
    /* Another program takes the name in the last moment. */
    static void appear(const char* name) {
      if (getenv("LK_APPEARS") == NULL) return;
      int file = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
      if (write(file, "precious", 8) != 8) abort();
      close(file);
    }
    int rename(const char* from, const char* to) { appear(to); return renameat(AT_FDCWD, from, AT_FDCWD, to); }
    /* The second name stays as often as LK_STAYS says. */
    int unlink(const char* name) {
      static int calls;
      if (getenv("LK_STAYS") == NULL || calls++ >= atoi(getenv("LK_STAYS"))) return unlinkat(AT_FDCWD, name, 0);
      errno = EIO;
      return -1;
    }
    int link(const char* from, const char* to) { appear(to); return linkat(AT_FDCWD, from, AT_FDCWD, to, 0); }
    """

    def setUp(self):
        super().setUp()
        self.write("in", b"A")
        library = self.folder / ".old.so"
        subprocess.run(["cc", "-shared", "-fPIC", "-o", library, "-x", "c", "-"], input=self.LIBRARY.encode(), check=True)
        self.environment = {"LD_PRELOAD": str(library)}

    def test_a_file_gets_its_name_and_loses_the_temporary_one(self):
        self.run_well("hex", "-o", "out", "in", environment=self.environment)
        self.assertEqual((self.names(), self.read("out")), ([".old.so", "in", "out"], b"41\n"))
        self.assertEqual((self.folder / "out").stat().st_nlink, 1)

    def test_a_remaining_temporary_name_is_a_failure(self):
        for calls, left in ((1, 0), (2, 1)):
            result = self.run_command("hex", "-o", "out", "in",
                                      environment={**self.environment, "LK_STAYS": str(calls)})
            self.assertEqual((result.status, self.read("out")), (1, b"41\n"))
            self.assertRegex(result.err.decode(), r"^latchkey: cannot remove: Input/output error: \.latchkey-\w+\n$")
            self.assertEqual(len(self.names()), 3 + left, self.names())
            (self.folder / "out").unlink()

    def test_a_file_that_appears_at_the_last_moment_is_not_replaced(self):
        result = self.run_command("hex", "-o", "out", "in", environment={**self.environment, "LK_APPEARS": "1"})
        self.assertEqual((result.status, result.lines[:1]), (1, ["latchkey: cannot create: File exists: out"]))
        self.assertEqual((self.names(), self.read("out")), ([".old.so", "in", "out"], b"precious"))
