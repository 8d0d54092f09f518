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
class LiveLists;
class SourceChoice;
} // namespace host

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

    // source: the data source the folder's components run on instead of the ones they name
    // (serve.ini's source); lists: the live parameter lists, shared by the workers.
    ComponentRunner(const dataservice::DataService &service, const host::SourceChoice &source,
                    std::shared_ptr<host::LiveLists> lists);
    explicit ComponentRunner(const dataservice::DataService &service);
    ~ComponentRunner();

    // The component's run-time inputs as its pad offers them; raises tessaly::Error when the
    // document cannot be read.
    QJsonObject describe(const ComponentFile &file);
    // The rows, or the error, into answer.
    void rows(const ComponentFile &file, const Inputs &inputs, Format format, Answer &answer);
    // The statement text, as `veldra sql` prints it; engine: as the data source receives it
    // with the inputs given (`veldra sql --engine`).
    void statement(const ComponentFile &file, const Inputs &inputs, bool engine, Answer &answer);
    // A page of a parameter's list with the inputs given (the parameters its filter refers to),
    // narrowed to entries whose shown text holds search.
    void list(const ComponentFile &file, const QString &reference, const QString &search, const Inputs &inputs,
              Answer &answer);

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
    // Sets the inputs as `veldra run --set` and `--pick` do: a parameter given more than once,
    // or one that takes several values, gets the values chosen; then the live lists follow.
    host::ComponentSession &prepared(const ComponentFile &file, const Inputs &inputs);

    const dataservice::DataService &m_service;
    std::unique_ptr<host::SourceChoice> m_source;
    std::shared_ptr<host::LiveLists> m_lists;
    QHash<QString, Kept> m_kept;
};

} // namespace server
