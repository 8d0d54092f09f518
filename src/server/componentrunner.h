#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>

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
    host::ComponentSession &session(const ComponentFile &file);

    const dataservice::DataService &m_service;
    std::unique_ptr<host::ComponentSession> m_session;
};

} // namespace server
