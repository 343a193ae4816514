// Running a program of the build in a fresh process and collecting its figures.
#include "FreshProcess.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace benchmodel {

namespace {

/// A temporary directory removed when the process ends.
struct Privremeni {
    Privremeni() {
        std::string obrazac = (std::filesystem::temp_directory_path() / "vorta-bench-XXXXXX");
        if (::mkdtemp(obrazac.data()) != nullptr)
            put = obrazac;
    }
    ~Privremeni() {
        std::error_code ec;
        if (!put.empty())
            std::filesystem::remove_all(put, ec);
    }
    std::string put;
};

void Procitaj(int fd, Izvestaj& izvestaj) {
    std::string tekst;
    char buf[4096];
    for (ssize_t n; (n = ::read(fd, buf, sizeof buf)) > 0;)
        tekst.append(buf, static_cast<size_t>(n));
    size_t od = 0;
    while (od < tekst.size()) {
        size_t kraj = tekst.find('\n', od);
        if (kraj == std::string::npos)
            kraj = tekst.size();
        const std::string red = tekst.substr(od, kraj - od);
        const size_t jednako = red.find('=');
        if (jednako != std::string::npos)
            izvestaj.vrednosti[red.substr(0, jednako)] = std::atof(red.c_str() + jednako + 1);
        od = kraj + 1;
    }
}

} // namespace

std::string DirektorijumPrograma() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

Izvestaj Pokreni(const std::vector<std::string>& argumenti, const std::string& izlaz) {
    Izvestaj izvestaj;
    std::vector<char*> argv;
    for (const std::string& a : argumenti)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t akcije;
    posix_spawn_file_actions_init(&akcije);
    int cev[2] = {-1, -1};
    if (izlaz.empty()) {
        if (::pipe(cev) != 0) {
            izvestaj.greska = "pipe";
            return izvestaj;
        }
        posix_spawn_file_actions_adddup2(&akcije, cev[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&akcije, cev[0]);
        posix_spawn_file_actions_addclose(&akcije, cev[1]);
    } else {
        // Output goes to a new file, as the copy it is compared with does: emptying the last
        // run's file would charge the program for freeing its pages.
        ::unlink(izlaz.c_str());
        posix_spawn_file_actions_addopen(&akcije, STDOUT_FILENO, izlaz.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0666);
    }
    const auto pocetak = std::chrono::steady_clock::now();
    pid_t pid = -1;
    const int r = posix_spawn(&pid, argv[0], &akcije, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&akcije);
    if (cev[1] >= 0)
        ::close(cev[1]);
    if (r != 0) {
        if (cev[0] >= 0)
            ::close(cev[0]);
        izvestaj.greska = "cannot start " + argumenti[0];
        return izvestaj;
    }
    if (cev[0] >= 0) {
        Procitaj(cev[0], izvestaj);
        ::close(cev[0]);
    }
    int status = 0;
    rusage u{};
    ::wait4(pid, &status, 0, &u);
    izvestaj.wallMs =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - pocetak)
            .count();
    const auto ms = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
    };
    izvestaj.cpuMs = ms(u.ru_utime) + ms(u.ru_stime);
    izvestaj.maxRssKb = static_cast<double>(u.ru_maxrss);
    izvestaj.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!izvestaj.ok)
        izvestaj.greska = argumenti[0] + " " + argumenti[1] + " failed";
    return izvestaj;
}

const std::string& PrivremeniDirektorijum() {
    static Privremeni privremeni;
    return privremeni.put;
}

const std::string& VelikaDatoteka() {
    static const std::string datoteka = [] {
        const std::string put = PrivremeniDirektorijum() + "/large.vld";
        Pokreni({DirektorijumPrograma() + "/vorta-bench-helper", "write", put});
        return put;
    }();
    return datoteka;
}

} // namespace benchmodel
