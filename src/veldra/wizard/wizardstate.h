#pragma once

#include "tessaly/namemap.h"
#include "veldra/veldra_export.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace tessaly {
class ServiceProxy;
class zetPrimitiveModel;
class zetVariable;
} // namespace tessaly

namespace veldra {

class SQLInfo;
class TSAccessor;

// Everything the query creation wizard knows while it is open, without any window: the
// component model that receives the result, the working copy of the definition, the one
// accessor of the form's life, the current step and the choices each step keeps. The pages
// show it and forward the person's actions; the step rules read and change it.
class VELDRA_EXPORT WizardState
{
public:
    enum Step : int {
        DatabaseStep,
        TableStep,
        ColumnStep,
        ConditionStep,
        GroupOrderStep,
        FinishStep,
    };
    static constexpr int StepCount = 6;

    WizardState();
    ~WizardState();
    WizardState(const WizardState &) = delete;
    WizardState &operator=(const WizardState &) = delete;

    // The windowless part of StartWizard: false (and nothing kept) without a model or a proxy.
    // A definition passed in is copied, never edited in place; without one, the working copy of
    // the last run is kept (an empty one at first). The accessor is made on the first call and
    // kept, so a later proxy is not used.
    bool start(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
               const std::shared_ptr<tessaly::ServiceProxy> &proxy,
               const std::shared_ptr<tessaly::zetVariable> &definition);

    const std::shared_ptr<tessaly::zetPrimitiveModel> &model() const { return m_model; }
    const std::shared_ptr<SQLInfo> &definition() const { return m_definition; }
    // Null before the first start().
    TSAccessor *accessor() const { return m_accessor.get(); }

    int currentStep() const { return m_currentStep; }
    // False, and no change, outside 0..StepCount-1.
    bool setCurrentStep(int step);
    bool isFirstStep() const { return m_currentStep == DatabaseStep; }
    bool isLastStep() const { return m_currentStep == FinishStep; }

    // Whether Next may be enabled on a step.
    bool isStepComplete(int step) const;

    // Finish: the model's "SQLInfo" slot gets the working definition, then its "BuildUI" slot
    // the same object, and the next opening starts on the first step.
    void finish();
    // Quit: the model is not touched; the next opening starts on the first step.
    void quit();

    // Step 0 and 1: the chosen database and the chosen tables (table name -> its TableInfo
    // where known, else an empty value). The tables are replaced by a new map when the
    // database changes.
    QString provider;
    QString dsn;
    QString catalog;
    std::shared_ptr<tessaly::NameMap> chosenTables = std::make_shared<tessaly::NameMap>();

    // Step 3: the text waiting to be put at the caret of the condition.
    QString pendingInsertText;

    // Step 4: the last row count typed, the direction and the column of a fixed ORDER BY.
    qint32 lastRowCount = 0;
    bool ascending = true;
    QString orderColumn;
    // The checked items of the GROUP BY list; they reach the definition only when the person
    // goes forward to the last step.
    QStringList groupByChecked;

private:
    std::shared_ptr<tessaly::zetPrimitiveModel> m_model;
    // Never null, so the pages can be built and shown before the first start().
    std::shared_ptr<SQLInfo> m_definition;
    std::unique_ptr<TSAccessor> m_accessor;
    int m_currentStep = DatabaseStep;
};

} // namespace veldra
