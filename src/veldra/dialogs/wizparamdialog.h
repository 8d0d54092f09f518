#pragma once

// Placeholder until the parameter list dialog lands: it only takes what the condition page
// hands over and shows an empty dialog. The real dialog replaces this file and its source.

#include <QDialog>

#include <functional>
#include <memory>

namespace veldra {

class SQLInfo;
class TSAccessor;

class WizParamDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamDialog(QWidget *parent = nullptr);

    void setInsertParameterToken(std::function<void(const QString &name)> insert) { m_insert = std::move(insert); }
    void setQueryDefinition(const std::shared_ptr<SQLInfo> &definition) { m_definition = definition; }
    void setAccessor(TSAccessor *accessor) { m_accessor = accessor; }

private:
    std::function<void(const QString &)> m_insert;
    std::shared_ptr<SQLInfo> m_definition;
    TSAccessor *m_accessor = nullptr;
};

} // namespace veldra
