#include "DataTable.h"
#include "Fixtures.h"
#include "runtime/Ansi.h"
#include "runtime/RuntimeError.h"
#include "store/ProfileCache.h"
#include "store/ProfileEngine.h"
#include "store/ini.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// A byte string that may hold NULs.
template <std::size_t N> QByteArray B(const char (&s)[N])
{
    return QByteArray(s, N - 1);
}

QString W(const char16_t *text)
{
    return QString::fromUtf16(text);
}

QByteArray utf16(const QString &text)
{
    QByteArray out("\xFF\xFE", 2);
    for (const QChar c : text) {
        out.append(char(c.unicode() & 0xFF));
        out.append(char(c.unicode() >> 8));
    }
    return out;
}

QString readKey(const QString &file, const QString &section, const QString &key,
                const QString &def = QStringLiteral("<default>"))
{
    QString result;
    const int count = store::getPrivateProfileString(section, key, def, result, 255, file);
    if (count != result.size())
        return QStringLiteral("<count %1 for %2 characters>").arg(count).arg(result.size());
    return result;
}

// All zero where the file is missing.
struct stat statOf(const QString &path)
{
    struct stat st = {};
    ::stat(QFile::encodeName(path).constData(), &st);
    return st;
}

const QByteArray kMissing("<missing>");

} // namespace

class TestProfileEngine : public QObject
{
    Q_OBJECT

    QTemporaryDir dir_;
    QString file_;

private slots:
    void initTestCase() { rt::setAnsiCodePageForTest(1252); }
    void cleanupTestCase() { rt::setAnsiCodePageForTest(0); }

    void init()
    {
        store::profilecache::clear();
        file_ = dir_.filePath(QStringLiteral("Data.ini"));
        removeFile(file_);
    }

    // The code page follows the language: our writes read back, and others' text shows.
    void codePages_data()
    {
        columns<QByteArray, int, QString, QByteArray>("locale", "codePage", "text", "bytes");
        const auto row = [](const char *locale, int codePage, const char16_t *text,
                            const QByteArray &bytes) {
            QTest::newRow(locale) << QByteArray(locale) << codePage << W(text) << bytes;
        };
        row("en_US.UTF-8", 1252, u"Caf\u00E9 10\u20AC", "Caf\xE9 10\x80");
        row("vi_VN", 1258, u"Nha s\u0129", "Nha si\xDE");
        row("ja_JP.UTF-8", 932, u"\u6B6F\u533B\u8005", "\x8E\x95\x88\xE3\x8E\xD2");
        row("zh_TW.UTF-8", 950, u"\u7259\u91AB", "\xA4\xFA\xC2\xE5");
    }

    void codePages()
    {
        QFETCH(QByteArray, locale);
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        const QByteArray saved = qgetenv("LC_ALL");
        qputenv("LC_ALL", locale);
        rt::setAnsiCodePageForTest(0);
        qputenv("LC_ALL", saved);
        QTEST(rt::ansiCodePage(), "codePage");

        QVERIFY(store::writePrivateProfileString(text, "k", text, file_));
        const QByteArray stored = readBytes(file_);
        const QString back = readKey(file_, text, "k");
        const QString other = dir_.filePath("Other.ini");
        writeBytes(other, "[S]\r\nk=" + bytes + "\r\n");
        const QString otherBack = readKey(other, "S", "k");
        rt::setAnsiCodePageForTest(1252);

        QCOMPARE(stored, "[" + bytes + "]\r\nk=" + bytes + "\r\n");
        QCOMPARE(back.normalized(QString::NormalizationForm_C), text);
        QCOMPARE(otherBack.normalized(QString::NormalizationForm_C), text);
    }

    void read_data()
    {
        columns<QByteArray, QString, QString, QString, QString>("file", "section", "key", "def",
                                                                "expected");

        const QString d("<default>");
        const QString a254(254, u'a');
        auto row = [&](const char *name, const QByteArray &file, const QString &section,
                       const QString &key, const QString &expected, const QString &def = {}) {
            QTest::newRow(name) << file << section << key << (def.isNull() ? d : def) << expected;
        };

        row("names ignore case", B("[Sec]\r\nKey=v\r\n"), "sEC", "kEY", "v");
        row("blanks around arguments", B("[S]\r\nk=v\r\n"), " \tS ", "  k\t", "v");
        row("CR line ends", B("[S]\rk=v\rj=w\r"), "S", "j", "w");
        row("mixed line ends", B("[S]\r\nk=v\rj=w\nz=x"), "S", "z", "x");
        row("NUL ends the value", B("[S]\r\nk=ab\0cd\r\n"), "S", "k", "ab");
        row("NUL before the =", B("[S]\r\nk\0=v\r\n"), "S", "k", d);
        row("NUL only ends its line", B("[S]\r\nx=1\0\r\nk=v\r\n"), "S", "k", "v");
        row("long line", "[S]\r\nx=" + QByteArray(5000, 'x') + "\r\nk=v\r\n", "S", "k", "v");
        row("header blanks trimmed", B("  [ S ]  \r\nk=v\r\n"), "S", "k", "v");
        row("name runs to the last ]", B("[a]b] c\r\nk=v\r\n"), "a]b", "k", "v");
        row("[ without ] is no header", B("[S]\r\n[T\r\nk=v\r\n"), "S", "k", "v");
        row("[ line with = is a key", B("[S]\r\n[T=v\r\n"), "S", "[T", "v");
        row("split at the first =", B("[S]\r\nk=a=b\r\n"), "S", "k", "a=b");
        row("blanks trimmed", B("[S]\r\n \t k \t=\t v  v \t\r\n"), "S", "k", "v  v");
        row("line without = is no key", B("[S]\r\nk\r\n"), "S", "k", d);
        row("indented comment", B("[S]\r\n  ;k=v\r\n"), "S", ";k", d);
        row("; inside a value", B("[S]\r\nk=v ;c\r\n"), "S", "k", "v ;c");
        row("# is ordinary", B("[S]\r\n#k=v\r\n"), "S", "#k", "v");
        row("first section wins", B("[S]\r\nk=1\r\n[T]\r\n[s]\r\nk=2\r\nj=3\r\n"), "S", "k", "1");
        row("second section unseen", B("[S]\r\nk=1\r\n[s]\r\nj=3\r\n"), "S", "j", d);
        row("first key wins", B("[S]\r\nk=1\r\nK=2\r\n"), "S", "k", "1");
        row("keys before the first header", B("k=1\r\n[S]\r\n"), "S", "k", d);
        row("keys under []", B("[]\r\nk=1\r\n[S]\r\n"), "S", "k", d);
        row("quoted blanks kept", B("[S]\r\nd=\" a b \"\r\n"), "S", "d", " a b ");
        row("empty quotes", B("[S]\r\nd=\"\"\r\n"), "S", "d", "");
        row("single quotes", B("[S]\r\nd='v'\r\n"), "S", "d", "v");
        row("leading quote only", B("[S]\r\nd=\"val\r\n"), "S", "d", "\"val");
        row("mixed quotes", B("[S]\r\nd=\"val'\r\n"), "S", "d", "\"val'");
        row("lone quote", B("[S]\r\nd=\"\r\n"), "S", "d", "\"");
        row("blank value", B("[S]\r\nk=   \r\n"), "S", "k", "");
        row("missing file", kMissing, "S", "k", d);
        row("missing section", B("[S]\r\nk=v\r\n"), "T", "k", d);
        row("default loses trailing spaces", kMissing, "S", "k", "  one two", "  one two   ");
        row("empty default", B("[S]\r\n"), "S", "k", "", "");
        row("300 quoted", "[S]\r\nk=\"" + QByteArray(300, 'a') + "\"\r\n", "S", "k", a254);
        row("long default", kMissing, "S", "k", a254, QString(400, u'a'));
        row("1252 bytes", B("[S]\r\nk=\xE9\x80\x81\r\n"), "S", "k", W(u"\u00E9\u20AC\u0081"));
        row("Windows-1252 names", B("[\xC9t\xE9]\r\nk=v\r\n"), W(u"\u00C9t\u00E9"), "K", "v");
        row("argument outside the code page", B("[?]\r\nk=v\r\n"), W(u"\u03A9"), "k", "v");
        row("UTF-8 mark hides line 1", B("\xEF\xBB\xBF[S]\r\nk=v\r\n"), "S", "k", d);
        row("UTF-8 mark, later lines", B("\xEF\xBB\xBF[S]\r\n[T]\r\nk=v\r\n"), "T", "k", "v");
        row("UTF-16LE", utf16(W(u"[S]\r\nk=\u00E9\u20AC\u03A9\r\n")), "s", "K",
            W(u"\u00E9\u20AC\u03A9"));
        row("UTF-16LE names kept", utf16(W(u"[\u03A9]\r\n[?]\r\nk=v\r\n")), W(u"\u03A9"), "k", d);
        row("UTF-16LE, LF ends", utf16(W(u"[S]\nk=1\nj=\"2\"\n")), "S", "j", "2");
    }

    void read()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, def);
        if (file != kMissing)
            writeBytes(file_, file);
        QTEST(readKey(file_, section, key, def), "expected");
    }

    void write_data()
    {
        columns<QByteArray, QString, QString, QString, QByteArray>("before", "section", "key",
                                                                   "value", "after");

        auto row = [](const char *name, const QByteArray &before, const QString &section,
                      const QString &key, const QString &value, const QByteArray &after) {
            QTest::newRow(name) << before << section << key << value << after;
        };

        row("new file", kMissing, "App", "key", "string", crlf("[App]\nkey=string\n"));
        row("existing key", crlf("; c\n\n[S]\n  Key = old \nx = 1\n"), "S", "key", "new",
            crlf("; c\n\n[S]\nKey=new\nx = 1\n"));
        row("other line ends kept", B("[S]\nk=1\nj=2\r"), "S", "K", "3", B("[S]\nk=3\r\nj=2\r"));
        row("key on the last line", B("[S]\r\nk=1"), "S", "k", "2", crlf("[S]\nk=2\n"));
        row("new key before blank lines", crlf("[S]\na=1\n\n\n[T]\nb=2\n"), "S", "c", "3",
            crlf("[S]\na=1\nc=3\n\n\n[T]\nb=2\n"));
        row("new key after the last key line", crlf("[S]\na=1\nnokey\n;note\n"), "S", "c", "3",
            crlf("[S]\na=1\nc=3\nnokey\n;note\n"));
        row("key in empty section", crlf("[S]\n\n[T]\n"), "S", "c", "3", crlf("[S]\nc=3\n\n[T]\n"));
        row("new key after a header without line end", "[S]", "S", "c", "3", crlf("[S]\nc=3\n"));
        row("key after an unended key", B("[S]\r\na=1"), "S", "c", "3", crlf("[S]\na=1\nc=3\n"));
        row("first section written", crlf("[S]\na=1\n[T]\n[s]\nb=2\n"), "S", "b", "9",
            crlf("[S]\na=1\nb=9\n[T]\n[s]\nb=2\n"));
        row("first key written", crlf("[S]\nk=1\nK=2\n"), "S", "k", "9", crlf("[S]\nk=9\nK=2\n"));
        row("key as spelled in the file", crlf("[S]\nMyKey=1\n"), "s", " mykey ", "2",
            crlf("[S]\nMyKey=2\n"));
        row("keys before the first header", crlf("a=1\n[S]\nb=2\n"), "S", "a", "3",
            crlf("a=1\n[S]\nb=2\na=3\n"));
        row("section, file unended", B("[S]\r\na=1"), "T", "b", "2", crlf("[S]\na=1\n[T]\nb=2\n"));
        row("new section after blank lines", crlf("[S]\na=1\n\n"), "T", "b", "2",
            crlf("[S]\na=1\n\n[T]\nb=2\n"));
        row("section after a CR", B("[S]\ra=1\r"), "T", "b", "2", B("[S]\ra=1\r[T]\r\nb=2\r\n"));
        row("new section in an empty file", "", "T", "b", "2", crlf("[T]\nb=2\n"));
        row("new section after NULs", B("Data \0 before \0 first \0 section"), "section1", "key1",
            "string1", B("Data \0 before \0 first \0 section\r\n[section1]\r\nkey1=string1\r\n"));
        row("names trimmed", kMissing, " New\t", "\tK ", "v", crlf("[New]\nK=v\n"));
        row("empty value", crlf("[S]\nk=1\n"), "S", "k", "", crlf("[S]\nk=\n"));
        row("quotes as given", crlf("[S]\nk=1\n"), "S", "k", "\"q\"", crlf("[S]\nk=\"q\"\n"));
        row("value adds a header", crlf("[S]\nk=1\nj=2\n"), "S", "k", "a\n[T]\rx=1",
            B("[S]\r\nk=a\n[T]\rx=1\r\nj=2\r\n"));
        row("high bytes kept", B("[S]\r\n;\x81\x8D\xFF\x00\r\nk=1\r\n"), "S", "k", "2",
            B("[S]\r\n;\x81\x8D\xFF\x00\r\nk=2\r\n"));
        row("new file the code page cannot hold", kMissing, "S", "k", W(u"\u03A9"),
            utf16(W(u"[S]\r\nk=\u03A9\r\n")));
        row("every line kept in UTF-16LE", B("; \xE9\x80\x81\n[S]\rk=1\r\n\r\nj=2"), "S", "k",
            W(u"\u0421\U0001F600"),
            utf16(W(u"; \u00E9\u20AC\u0081\n[S]\rk=\u0421\U0001F600\r\n\r\nj=2")));
        row("a new name the code page cannot hold", crlf("[S]\nk=1\n"), W(u"\u0939"), "k", "v",
            utf16(W(u"[S]\r\nk=1\r\n[\u0939]\r\nk=v\r\n")));
        row("cut at NUL", kMissing, "S", "k", QString::fromLatin1("a\0b", 3), crlf("[S]\nk=a\n"));
        row("UTF-8 mark hides line 1", crlf("\xEF\xBB\xBF[S]\nk=1\n"), "S", "k", "2",
            crlf("\xEF\xBB\xBF[S]\nk=1\n[S]\nk=2\n"));
        row("UTF-16LE key", utf16("[S]\r\nk=1\r\nj=2\r\n"), "S", "k", W(u"\u00E9\u03A9"),
            utf16(W(u"[S]\r\nk=\u00E9\u03A9\r\nj=2\r\n")));
        row("UTF-16 header", utf16("[S]\nk=1"), "T", "j", "2", utf16("[S]\nk=1\r\n[T]\r\nj=2\r\n"));
        // Values already stored: not even rewritten.
        row("unchanged, spaced, LF", B("[S]\n  K =  v  \n"), "S", "k", "v", B("[S]\n  K =  v  \n"));
        row("unchanged, quotes", crlf("[S]\nk=\"v\"\n"), "S", "k", "\"v\"", crlf("[S]\nk=\"v\"\n"));
        row("unchanged, same line", crlf("[S]\nk= v \n"), "S", "k", " v ", crlf("[S]\nk= v \n"));
        row("unchanged, bytes 0x80-0xff read back", B("[S]\r\nk=\x80\x81\x9D\xFF\r\n"), "S", "k",
            W(u"\u20AC\u0081\u009D\u00FF"), B("[S]\r\nk=\x80\x81\x9D\xFF\r\n"));
    }

    void write()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        if (before != kMissing)
            writeBytes(file_, before);
        const struct stat old = statOf(file_);
        QVERIFY(store::writePrivateProfileString(section, key, value, file_));
        QTEST(readBytes(file_), "after");
        // A value already there leaves the file alone: not even rewritten.
        if (readBytes(file_) == before) {
            QCOMPARE(statOf(file_).st_ino, old.st_ino);
            QCOMPARE(statOf(file_).st_mtim.tv_nsec, old.st_mtim.tv_nsec);
        }
    }

    void failedWritesAreSilent()
    {
        QVERIFY(!store::writePrivateProfileString("S", "k", "v", dir_.filePath("none/Data.ini")));
        QVERIFY(!QFileInfo::exists(dir_.filePath("none")));

        if (::geteuid() == 0)
            QSKIP("permissions do not bind the superuser");
        const QString locked = dir_.filePath("locked");
        QVERIFY(QDir().mkdir(locked));
        writeBytes(locked + "/Data.ini", "[S]\r\nk=1\r\n");
        QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(!store::writePrivateProfileString("S", "k", "2", locked + "/Data.ini"));
        QCOMPARE(readKey(locked + "/Data.ini", "S", "k"), QString("1"));
        QVERIFY(
            QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        writeBytes(file_, "[S]\r\nk=1\r\n");
        QVERIFY(QFile::setPermissions(file_, QFile::ReadOwner));
        QVERIFY(!store::writePrivateProfileString("S", "k", "2", file_));
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=1\r\n"));
    }

    // A batch writes all at its commit; nothing if left uncommitted or the disk is full.
    void batchWritesAllOrNothing_data()
    {
        columns<bool, int>("committed", "writeError");
        QTest::newRow("committed") << true << 0;
        QTest::newRow("dropped") << false << 0;
        QTest::newRow("full disk") << true << ENOSPC;
    }

    void batchWritesAllOrNothing()
    {
        QFETCH(bool, committed);
        QFETCH(int, writeError);
        const QString missing = dir_.filePath("New.ini");
        QFile::remove(missing);
        writeBytes(file_, "[S]\r\nk=1\r\n");
        const struct stat old = statOf(file_);
        {
            store::WriteBatch batch;
            QVERIFY(store::writePrivateProfileString("S", "k", "2", file_));
            QVERIFY(store::writePrivateProfileString("T", "a\nb", "3", file_));
            QVERIFY(store::writePrivateProfileString("S", "j", "4", missing));
            QCOMPARE(readKey(file_, "S", "k"), QString("2"));
            QCOMPARE(statOf(file_).st_ino, old.st_ino);
            QVERIFY(!QFileInfo::exists(missing));
            store::atomicfile::setWriteErrorForTest(writeError);
            if (committed)
                QCOMPARE(batch.commit(), writeError == 0);
            store::atomicfile::setWriteErrorForTest(0);
        }
        const bool written = committed && writeError == 0;
        QCOMPARE(readBytes(file_), written ? QByteArray("[S]\r\nk=2\r\n[T]\r\na\nb=3\r\n")
                                           : QByteArray("[S]\r\nk=1\r\n"));
        QCOMPARE(readKey(file_, "S", "k"), QString(written ? "2" : "1"));
        QCOMPARE(readBytes(missing), written ? QByteArray("[S]\r\nj=4\r\n") : QByteArray());
        QFile::remove(missing);
    }

    // Writes go through links and keep the mode; a link into no folder fails and stays.
    void writesGoThroughLinksAndKeepTheMode()
    {
        const QString target = dir_.filePath("target.ini");
        QFile::remove(target);
        writeBytes(target, "[S]\r\nk=1\r\n");
        QVERIFY(
            QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        QVERIFY(QFile::link(target, file_));
        QVERIFY(store::writePrivateProfileString("S", "k", "2", file_));
        QVERIFY(QFileInfo(file_).isSymLink());
        QCOMPARE(readBytes(target), QByteArray("[S]\r\nk=2\r\n"));
        QCOMPARE(statOf(target).st_mode & 07777, mode_t(0640));

        QVERIFY(QFile::remove(target));
        QVERIFY(store::writePrivateProfileString("S", "k", "3", file_));
        QVERIFY(QFileInfo(file_).isSymLink());
        QCOMPARE(readBytes(target), QByteArray("[S]\r\nk=3\r\n"));

        QVERIFY(QFile::remove(file_));
        QVERIFY(QFile::link(dir_.filePath("unmounted/Data.ini"), file_));
        int error = 0;
        QVERIFY(!store::writePrivateProfileString("S", "k", "4", file_, &error));
        QCOMPARE(error, ENOENT);
        QVERIFY(QFileInfo(file_).isSymLink());
        QFile::remove(file_);
    }

    void leftoverTemporaryFilesAreRemoved()
    {
        QTemporaryDir dir;
        const auto make = [&dir](const char *name, int age) {
            const QString path = dir.filePath(name);
            writeBytes(path, "x");
            const timespec then{::time(nullptr) - age, 0};
            const timespec times[2] = {then, then};
            ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0);
        };
        make(".Data.ini.tmp-old", 120);
        make(".Data.ini.tmp-new", 5);
        make(".Other.ini.tmp-old", 120);
        QVERIFY(store::writePrivateProfileString("S", "k", "v", dir.filePath("Data.ini")));
        QCOMPARE(
            QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
            (QStringList{".Data.ini.lock", ".Data.ini.tmp-new", ".Other.ini.tmp-old", "Data.ini"}));
    }

    // A holder that never lets go (a hung calendar) delays a write, but does not stop it.
    void hungLockHolderDelaysTheWriteOnly()
    {
        writeBytes(file_, "[S]\r\nk=1\r\n");
        const QByteArray lockPath = QFile::encodeName(dir_.filePath(".Data.ini.lock"));
        const int held = ::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(held >= 0);
        QCOMPARE(::flock(held, LOCK_EX), 0);
        QVERIFY(store::writePrivateProfileString("S", "k", "2", file_));
        ::close(held);
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=2\r\n"));
    }

    // Two processes write 400 keys each to one file at the same time; none is lost.
    void twoWritersKeepEachOthersKeys()
    {
        QTemporaryDir dir(QDir("/dev/shm").exists() ? "/dev/shm/tst-XXXXXX" : QString());
        const QString file = dir.filePath("Data.ini");
        QVERIFY(inChildProcesses(2, [&file](int w) {
            bool ok = true;
            for (int n = 1; n <= 400; ++n)
                ok &= store::writePrivateProfileString(QString::number(w), QString::number(n), "v",
                                                       file);
            return ok;
        }));
        int kept = 0;
        for (int w = 0; w < 2; ++w)
            for (int n = 1; n <= 400; ++n)
                kept += readKey(file, QString::number(w), QString::number(n)) == "v";
        QCOMPARE(kept, 800);
    }

    void inPlaceEditsSurviveOurWrites_data()
    {
        QTest::addColumn<bool>("ext2");
        QTest::newRow("1-second timestamps, simulated") << false;
        QTest::newRow("ext2 image") << true;
    }

    // Another program's same-size edit within our last write's tick survives our next write.
    void inPlaceEditsSurviveOurWrites()
    {
        QFETCH(bool, ext2);
        QTemporaryDir dir;
        QString folder = dir.path();
        const QString image = dir.filePath("ext2.img");
        const QString mountPoint = dir.filePath("mnt");
        QString mounted;
        const auto unmount = qScopeGuard([&mounted] {
            if (!mounted.isEmpty())
                QProcess::execute("umount", {mounted});
        });
        if (ext2) {
            QVERIFY(QDir().mkdir(mountPoint));
            QFile img(image);
            QVERIFY(img.open(QIODevice::WriteOnly) && img.resize(4 << 20));
            img.close();
            if (QProcess::execute("mkfs.ext2", {"-q", "-F", "-I", "128", image}) != 0 ||
                QProcess::execute("mount", {"-o", "loop", image, mountPoint}) != 0)
                QSKIP("an ext2 image cannot be made or mounted here");
            mounted = folder = mountPoint;
        }
        store::ProfileCache::setCoarseTimestampsForTest(!ext2);
        const QString file = folder + "/Data.ini";
        writeBytes(file, "[S]\r\nours=0\r\ntheirs=a\r\n");
        int lost = 0;
        for (int i = 0; i < 20; ++i) {
            QVERIFY(store::writePrivateProfileString("S", "ours", QString::number(i % 10), file));
            const char theirs = char('b' + i);
            {
                QFile f(file);
                QVERIFY(f.open(QIODevice::ReadWrite));
                QVERIFY(f.seek(readBytes(file).indexOf("theirs=") + 7));
                QVERIFY(f.putChar(theirs));
            }
            waitUntilSeen();
            QCOMPARE(readKey(file, "S", "theirs"), QString(QChar(theirs)));
            QVERIFY(store::writePrivateProfileString("S", "ours", "x", file));
            lost += !readBytes(file).contains(QByteArray("theirs=") + theirs);
        }
        store::ProfileCache::setCoarseTimestampsForTest(false);
        QCOMPARE(lost, 0);
    }

    void readingEveryKeyParsesOnce()
    {
        QByteArray content;
        for (int s = 1; s <= 200; ++s) {
            content += "[" + QByteArray::number(s) + "]\r\n";
            for (const char *k : {"Date", "Time", "Memo", "Cat"})
                content += QByteArray(k) + "=" + QByteArray::number(s * 7) + "\r\n";
        }
        writeBytes(file_, content);
        const quint64 before = store::profilecache::parseCount();
        for (int s = 1; s <= 200; ++s)
            for (const char *k : {"Date", "Time", "Memo", "Cat"})
                QCOMPARE(readKey(file_, QString::number(s), k), QString::number(s * 7));
        QCOMPARE(store::profilecache::parseCount(), before + 1);

        // Our own writes update the parsed copy instead of parsing the file again.
        QVERIFY(store::writePrivateProfileString("7", "Memo", "changed", file_));
        QVERIFY(store::writePrivateProfileString("7", "New", "added", file_));
        QVERIFY(store::writePrivateProfileString("201", "Date", "appended", file_));
        QCOMPARE(readKey(file_, "201", "Date"), QString("appended"));
        QCOMPARE(store::profilecache::parseCount(), before + 1);
    }

    // Same size, same inode, and a modification time a nanosecond on.
    void fileChangedInPlaceIsReread()
    {
        writeBytes(file_, "[S]\r\nk=1\r\n");
        QCOMPARE(readKey(file_, "S", "k"), QString("1"));
        const struct stat st = statOf(file_);
        {
            QFile f(file_);
            QVERIFY(f.open(QIODevice::ReadWrite));
            f.seek(7);
            f.write("2");
        }
        const long nsec = st.st_mtim.tv_nsec == 999999999 ? 0 : st.st_mtim.tv_nsec + 1;
        const timespec times[2] = {st.st_atim, {st.st_mtim.tv_sec, nsec}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(file_).constData(), times, 0), 0);
        waitUntilSeen();
        QCOMPARE(readKey(file_, "S", "k"), QString("2"));
    }

    void changeByAnotherProcessIsSeen_data()
    {
        columns<QString, QString, QString>("setup", "change", "expected");

        const QString plain("mkdir -p \"$D\" \"$O\" && printf '[S]\\r\\nk=0\\r\\n' > \"$F\"");
        const QString two("printf '[S]\\r\\nk=2\\r\\n' > ");
        const auto row = [](const char *name, const QString &setup, const QString &change,
                            const char *expected) {
            QTest::newRow(name) << setup << change << QString(expected);
        };
        row("rewritten in place", plain, two + "\"$F\" && printf 'j=1\\r\\n' >> \"$F\"", "2");
        row("renamed over, same size and time", plain,
            two + "\"$D/new\" && touch -r \"$F\" \"$D/new\" && mv \"$D/new\" \"$F\"", "2");
        row("removed", plain, "rm \"$F\"", "<default>");
        row("file is a link, its target moved away",
            "mkdir -p \"$D\" \"$O\" && printf '[S]\\r\\nk=0\\r\\n' > \"$O/t\" && ln -s \"$O/t\" "
            "\"$F\"",
            "mv \"$O/t\" \"$O/moved\"", "<default>");
        row("folder is a link",
            "mkdir -p \"$P\" \"$O\" && ln -s \"$O\" \"$D\" && "
            "printf '[S]\\r\\nk=0\\r\\n' > \"$F\"",
            "mkdir \"$P/o2\" && " + two + "\"$P/o2/Data.ini\" && ln -sfn \"$P/o2\" \"$D\"", "2");
    }

    // Another process changes the file between our write and the next read, which sees it.
    void changeByAnotherProcessIsSeen()
    {
        QFETCH(QString, setup);
        QFETCH(QString, change);
        QTemporaryDir dir;
        const QString file = dir.filePath("p/d/Data.ini");
        // The scripts' names for the folders and the file.
        qputenv("P", QFile::encodeName(dir.filePath("p")));
        qputenv("D", QFile::encodeName(dir.filePath("p/d")));
        qputenv("F", QFile::encodeName(file));
        qputenv("O", QFile::encodeName(dir.filePath("o")));
        QCOMPARE(QProcess::execute("sh", {"-c", setup}), 0);
        waitUntilSeen();
        QCOMPARE(readKey(file, "S", "k"), QString("0"));
        QVERIFY(store::writePrivateProfileString("S", "k", "1", file));
        QCOMPARE(readKey(file, "S", "k"), QString("1"));
        QCOMPARE(QProcess::execute("sh", {"-c", change}), 0);
        waitUntilSeen();
        QTEST(readKey(file, "S", "k"), "expected");
    }

    // After random writes the cached copy matches a fresh parse: same bytes, same reads.
    void cachedCopyMatchesAFreshParse()
    {
        const QByteArray start = B("x=0\r\n[A]\r\na=1\r\n\r\n[b]\nB=2\n;c=3\r\n[A]\r\nc=4");
        writeBytes(file_, start);
        QByteArray expected = start;
        const QStringList sections{"A", "b", "C", "[d]", ""};
        const QStringList keys{"a", "B", "c", "x", "[k]", ";c", "k=v", "d"};
        const QStringList values{"1", "", "\"q\"", "v\r\n[C]\r\nd=9", "w\nc=8", " s ", "e\r[b]"};
        QRandomGenerator random(20260417);
        for (int step = 0; step < 300; ++step) {
            const QString &s = sections[random.bounded(int(sections.size()))];
            const QString &k = keys[random.bounded(int(keys.size()))];
            const QString &v = values[random.bounded(int(values.size()))];
            QVERIFY(store::writePrivateProfileString(s, k, v, file_));

            // The same write on a copy the engine has never seen.
            const QString fresh = dir_.filePath(QStringLiteral("fresh%1.ini").arg(step));
            writeBytes(fresh, expected);
            QVERIFY(store::writePrivateProfileString(s, k, v, fresh));
            expected = readBytes(fresh);
            QCOMPARE(readBytes(file_), expected);

            const QString parsed = dir_.filePath(QStringLiteral("parsed%1.ini").arg(step));
            QVERIFY(QFile::rename(fresh, parsed));
            for (const QString &rs : sections)
                for (const QString &rk : keys)
                    QCOMPARE(readKey(file_, rs, rk), readKey(parsed, rs, rk));
            QVERIFY(QFile::remove(parsed));
        }
    }

    // ReadINI and WriteINI, over the engine.
    void writeStoresLineBreaksAndCleansTheVariable()
    {
        QString value("a\r\nb\nc\rd");
        WriteINI(file_, "S", "k", value);
        QCOMPARE(value, QString("a  b c d"));
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=a\r\nb\nc\rd\r\n"));
        QCOMPARE(ReadINI(file_, "S", "k", "d"), QString("a"));

        const QString fixed("x\r\ny");
        WriteINI(file_, "S", "j", fixed);
        QCOMPARE(fixed, QString("x\r\ny"));
        QCOMPARE(readBytes(file_), QByteArray("[S]\r\nk=a\r\nj=x\r\ny\r\nb\nc\rd\r\n"));
    }

    void overlongValueOverflowsBeforeWriting()
    {
        QString longest(32767, u'\n');
        WriteINI(file_, "S", "k", longest);
        QCOMPARE(longest, QString(32767, u' '));
        QCOMPARE(readBytes(file_).size(), qsizetype(5 + 2 + 32767 + 2));

        QFile::remove(file_);
        QString tooLong(32768, u'\n');
        for (int pass = 0; pass < 2; ++pass) {
            try {
                if (pass == 0)
                    WriteINI(file_, "S", "k", tooLong);
                else
                    WriteINI(file_, "S", "k", std::as_const(tooLong));
                QFAIL("no overflow");
            } catch (const rt::RuntimeError &error) {
                QCOMPARE(error.number(), 6);
            }
            QCOMPARE(tooLong, QString(32768, u'\n'));
            QVERIFY(!QFile::exists(file_));
        }
    }

    // The folder and the name are joined as they are, even where that doubles the '/'.
    void pathsAreUsedAsGiven()
    {
        rt::setProgramFolderForTest(dir_.path() + "/");
        QCOMPARE(files::dataIni(), dir_.path() + "//Data.ini");
        rt::setProgramFolderForTest(QString());
    }
};

QTEST_GUILESS_MAIN(TestProfileEngine)
#include "tst_profileengine.moc"
