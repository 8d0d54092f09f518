#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace dataservice {
class DataService;
}

namespace host {
class ComponentSession;
}

namespace server {

class Answer;
struct ComponentFile;

// What one worker does with components: each request starts from the document as saved,
// takes the inputs given by name exactly as `veldra run --set` does, and runs through the
// same data service and guards. Held by one worker thread.
class ComponentRunner
{
public:
    using Inputs = QList<QPair<QString, QString>>;
    enum class Format { Json, Csv };

    explicit ComponentRunner(const dataservice::DataService &service);
    ~ComponentRunner();

    // The component's run-time inputs as its pad offers them; raises tessaly::Error when the
    // document cannot be read.
    QJsonObject describe(const ComponentFile &file);
    // The rows, or the error, into answer.
    void rows(const ComponentFile &file, const Inputs &inputs, Format format, Answer &answer);
    // The statement text, as `veldra sql` prints it.
    void statement(const ComponentFile &file, Answer &answer);

private:
    // A session kept per component and loaded once per version of its file. What one request
    // set is put back to the document's values before the next, so no request sees another's.
    struct Kept
    {
        quint64 version = 0;
        std::shared_ptr<host::ComponentSession> session;
        QHash<QString, QVariant> saved; // each input's value in the document
        QStringList touched;            // inputs the last request set
    };

    // The component as saved, with the inputs the request is about to set marked as touched.
    host::ComponentSession &session(const ComponentFile &file, const Inputs &inputs = {});

    const dataservice::DataService &m_service;
    QHash<QString, Kept> m_kept;
};

} // namespace server
