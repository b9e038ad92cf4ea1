// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnailer/Confinement.h"

#include "tests/support/InChild.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

// Tries in a child process what the kernel must refuse to a confined process.
class ConfinementTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void who_decodes_opens_nothing();
    void who_opens_files_changes_none();
    void who_writes_does_so_in_its_folder_only();
    void nobody_speaks_to_the_network_or_starts_programs();
    void nobody_runs_what_was_written();
    void memory_ends_at_its_bound();

private:
    const SampleFiles samples;
    const std::string file = samples.file("a.txt", "text").toStdString();
    const std::string folder = file.substr(0, file.rfind('/'));
};

namespace {

constexpr std::uint64_t kMemory = 64 << 20;

// Ends the child with a message unless `isTrue`.
void require(bool isTrue, const char *what)
{
    if (isTrue)
        return;
    (void)!::write(STDERR_FILENO, what, qstrlen(what));
    (void)!::write(STDERR_FILENO, "\n", 1);
    ::_exit(1);
}

void confine(Confinement confinement)
{
    confinement.memory = kMemory;
    require(confineFileSystem(confinement) && confineProcess(confinement), "is confined");
}

bool isRefused(long result)
{
    return result < 0 && (errno == EPERM || errno == EACCES);
}

} // namespace

void ConfinementTest::initTestCase()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("Nothing is confined under the sanitizers.");
#endif
}

void ConfinementTest::who_decodes_opens_nothing()
{
    QVERIFY(inChild([this] {
                const int open = ::open(file.c_str(), O_RDONLY);
                confine({});
                char byte = 0;
                require(::pread(open, &byte, 1, 0) == 1, "reads what is open");
                require(isRefused(::open(file.c_str(), O_RDONLY)), "opens no file");
                require(isRefused(::open("/proc/self/status", O_RDONLY)), "opens nothing of /proc");
                require(isRefused(::unlink(file.c_str())), "removes nothing");
                require(isRefused(::inotify_add_watch(0, file.c_str(), 1)), "watches nothing");
            }).finished);
}

void ConfinementTest::who_opens_files_changes_none()
{
    QVERIFY(inChild([this] {
                Confinement confinement;
                confinement.opensFiles = true;
                confinement.readsEverywhere = true;
                confine(confinement);
                require(::open(file.c_str(), O_RDONLY) >= 0, "reads files");
                require(isRefused(::open(file.c_str(), O_WRONLY)), "writes none");
                require(isRefused(::open(file.c_str(), O_RDONLY | O_TRUNC)), "empties none");
                require(isRefused(::open((folder + "/new").c_str(), O_RDONLY | O_CREAT, 0600)), "makes none");
                require(isRefused(::unlink(file.c_str())), "removes none");
                require(isRefused(::rename(file.c_str(), (folder + "/b").c_str())), "moves none");
                require(isRefused(::mkdir((folder + "/c").c_str(), 0700)), "makes no folder");
            }).finished);
}

void ConfinementTest::who_writes_does_so_in_its_folder_only()
{
    const std::string own = folder + "/own";
    QCOMPARE(::mkdir(own.c_str(), 0700), 0);
    QVERIFY(inChild([&] {
                Confinement confinement;
                confinement.writesFiles = true;
                confinement.writable = {own};
                confine(confinement);
                require(::open((own + "/a").c_str(), O_RDWR | O_CREAT | O_EXCL, 0600) >= 0, "writes in its folder");
                require(::rename((own + "/a").c_str(), (own + "/b").c_str()) == 0, "and replaces there");
                require(isRefused(::open(file.c_str(), O_WRONLY)), "writes nowhere else");
                require(isRefused(::open(file.c_str(), O_RDONLY)), "nor reads there");
                require(::rename((own + "/b").c_str(), (folder + "/b").c_str()) < 0, "nor moves anything there");
            }).finished);
}

void ConfinementTest::nobody_speaks_to_the_network_or_starts_programs()
{
    QVERIFY(inChild([] {
                Confinement all;
                all.opensFiles = all.writesFiles = all.awaitsWriters = all.readsEverywhere = true;
                confine(all);
                require(isRefused(::socket(AF_INET, SOCK_STREAM, 0)), "no network");
                require(isRefused(::socket(AF_UNIX, SOCK_STREAM, 0)), "no socket of this machine");
                char name[] = "/bin/true";
                char *const arguments[] = {name, nullptr};
                require(isRefused(::execv(name, arguments)), "no program");
                require(isRefused(::fork()), "no process");
                require(isRefused(::kill(::getppid(), 0)), "no signal to others");
            }).finished);
}

void ConfinementTest::nobody_runs_what_was_written()
{
    QVERIFY(inChild([] {
                confine({});
                void *page = ::mmap(nullptr, 4'096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                require(page != MAP_FAILED, "has memory");
                require(isRefused(::mprotect(page, 4'096, PROT_READ | PROT_EXEC)), "that does not become code");
            }).finished);
}

void ConfinementTest::memory_ends_at_its_bound()
{
    QVERIFY(inChild([] {
                confine({});
                require(::mmap(nullptr, kMemory, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) ==
                            MAP_FAILED,
                        "there is no more memory than that");
            }).finished);
}

PARKLET_TEST(ConfinementTest)
#include "ConfinementTest.moc"
