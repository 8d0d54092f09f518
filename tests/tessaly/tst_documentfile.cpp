#include <tessaly/documentfile.h>
#include <tessaly/error.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tessaly;

// A document path may name anything: a FIFO that never ends, a device, a directory.
class TestDocumentFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readingStopsAtTheLimit_data();
    void readingStopsAtTheLimit();
    void readingAnEndlessFifoStops();
    void onlyRegularFilesAreReplaced_data();
    void onlyRegularFilesAreReplaced();

private:
    QTemporaryDir m_dir;
};

void TestDocumentFile::initTestCase()
{
    QVERIFY(m_dir.isValid());
    std::signal(SIGPIPE, SIG_IGN); // the FIFO's writer outlives its reader
    QFile small(m_dir.filePath("small.xml"));
    QVERIFY(small.open(QIODevice::WriteOnly));
    small.write(QByteArray(1000, 'x'));
    QVERIFY(mkfifo(QFile::encodeName(m_dir.filePath("fifo")).constData(), 0600) == 0);
    QVERIFY(QFile::link("/dev/null", m_dir.filePath("null-link")));
    QVERIFY(QFile::link(m_dir.filePath("small.xml"), m_dir.filePath("file-link")));
}

void TestDocumentFile::readingStopsAtTheLimit_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<qint64>("size"); // -1: refused
    QTest::newRow("a file within the limit")
        << m_dir.filePath("small.xml") << qint64(1000) << qint64(1000);
    QTest::newRow("a file one byte over")
        << m_dir.filePath("small.xml") << qint64(999) << qint64(-1);
    QTest::newRow("an empty device") << "/dev/null" << qint64(10) << qint64(0);
    QTest::newRow("an endless device") << "/dev/zero" << DocumentFile::SizeLimit << qint64(-1);
    QTest::newRow("a directory") << m_dir.path() << qint64(10) << qint64(-1);
    QTest::newRow("nothing there") << m_dir.filePath("missing.xml") << qint64(10) << qint64(-1);
}

void TestDocumentFile::readingStopsAtTheLimit()
{
    QFETCH(QString, path);
    QFETCH(qint64, limit);
    QFETCH(qint64, size);
    try {
        QCOMPARE(DocumentFile::read(path, limit).size(), size);
    } catch (const Error &error) {
        QVERIFY2(size < 0, qPrintable(error.message()));
        QCOMPARE(error.number(), ErrorNumber::FileAccess);
        QVERIFY2(error.message().startsWith(path), qPrintable(error.message()));
    }
}

void TestDocumentFile::readingAnEndlessFifoStops()
{
    const QByteArray fifo = QFile::encodeName(m_dir.filePath("fifo"));
    std::thread writer([&fifo] {
        const int fd = ::open(fifo.constData(), O_WRONLY);
        const QByteArray chunk(65536, 'x');
        while (fd >= 0 && ::write(fd, chunk.constData(), size_t(chunk.size())) > 0) { }
        ::close(fd);
    });
    QString message;
    try {
        DocumentFile::read(QFile::decodeName(fifo), 1024 * 1024);
    } catch (const Error &error) {
        message = error.message();
    }
    writer.join(); // the reader closed its end, so the writer's next write fails
    QVERIFY2(message.contains("reading stopped"), qPrintable(message));
}

void TestDocumentFile::onlyRegularFilesAreReplaced_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("replaceable");
    QTest::newRow("a regular file") << m_dir.filePath("small.xml") << true;
    QTest::newRow("a new file") << m_dir.filePath("new.xml") << true;
    QTest::newRow("a link to a regular file") << m_dir.filePath("file-link") << true;
    QTest::newRow("a FIFO") << m_dir.filePath("fifo") << false;
    QTest::newRow("a device") << "/dev/null" << false;
    QTest::newRow("a link to a device") << m_dir.filePath("null-link") << false;
    QTest::newRow("a directory") << m_dir.path() << false;
}

void TestDocumentFile::onlyRegularFilesAreReplaced()
{
    QFETCH(QString, path);
    QFETCH(bool, replaceable);
    try {
        DocumentFile::checkReplaceable(path);
        QVERIFY(replaceable);
    } catch (const Error &error) {
        QVERIFY2(!replaceable, qPrintable(error.message()));
        QVERIFY(error.message().contains("not a regular file"));
    }
}

QTEST_GUILESS_MAIN(TestDocumentFile)
#include "tst_documentfile.moc"
