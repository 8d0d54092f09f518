#pragma once

// For the wizard's tests: a component model that keeps what is written into it, and a wizard
// state opened as its first two steps leave it.

#include "../common/definitions.h"
#include "../common/structureservice.h"

#include "tessaly/defaultmodel.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardstate.h"

#include <QTest>

namespace testwizard {

// A model that keeps every slot write, in order.
class RecordingModel final : public tessaly::zetPrimitiveModel
{
public:
    bool zetPrimitiveModel_SetModel(const std::shared_ptr<tessaly::zetModelSite> &) override { return true; }
    bool zetPrimitiveModel_onInitialize(int) override { return true; }
    bool zetPrimitiveModel_onCleanup() override { return true; }
    bool zetPrimitiveModel_onCopy(zetPrimitiveModel &) override { return true; }
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &) override { return {}; }
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override
    {
        writes.append({ name, value });
        return true;
    }
    bool zetPrimitiveModel_onSave(tessaly::TagStream &) override { return true; }
    bool zetPrimitiveModel_onLoad(tessaly::TagStream &) override { return true; }

    QList<std::pair<QString, QVariant>> writes;
};

// orders (id, amount=Total) and customers (id, name) chosen; orders.id, the alias Total's
// column and SUM(amount) selected; the expressions SUM(amount) and COUNT(*).
inline std::shared_ptr<veldra::SQLInfo> sampleQuery()
{
    auto query = std::make_shared<veldra::SQLInfo>();
    testdefs::addTable(*query, "orders", { "id", "amount=Total" });
    testdefs::addTable(*query, "customers", { "id", "name" });
    testdefs::addExpression(*query, "SUM(amount)");
    testdefs::addExpression(*query, "COUNT(*)");
    testdefs::select(*query, { "orders.id", "orders.amount", "SUM(amount)" });
    return query;
}

// Opens the wizard state on a copy of definition as its first two steps leave it: the sample
// database chosen and the definition's tables chosen (the service lists them).
inline void start(veldra::WizardState &state, const std::shared_ptr<veldra::SQLInfo> &definition,
                  std::shared_ptr<testservice::ScriptedService> service = nullptr)
{
    if (!service)
        service = testservice::sqliteStructure();
    const tessaly::NameMap &tables = *definition->tables();
    QStringList &listed = service->levels["SQLite/Sample/main"];
    for (int i = 0; i < tables.count(); ++i) {
        if (!listed.contains(tables.key(i)))
            listed.append(tables.key(i));
    }
    testdefs::setDatabase(*definition, "SQLite", "Sample", "main");
    state.start(std::make_shared<tessaly::DefaultModel>(), service, definition);
    state.database().initialize();
    if (tables.count() > 0)
        QVERIFY(state.tables().prepare());
}

} // namespace testwizard
