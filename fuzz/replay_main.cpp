// Runs the fuzz target once per file named on the command line (a seed corpus), for builds
// without libFuzzer.
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

int replay(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return 1;
    }
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    int failures = 0;
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QFileInfo info(QString::fromLocal8Bit(argv[i]));
        const QStringList files = info.isDir() ? QDir(info.filePath()).entryList(QDir::Files, QDir::Name)
                                               : QStringList{info.fileName()};
        for (const QString& name : files) {
            failures += replay(info.isDir() ? info.filePath() + '/' + name : info.filePath());
            ++inputs;
        }
    }
    std::printf("%d inputs replayed\n", inputs);
    return failures == 0 && inputs > 0 ? 0 : 1;
}
