#pragma once

// For the wizard's tests: a component model that keeps what is written into it, and a wizard
// state opened as its first two steps leave it.

#include "../common/definitions.h"
#include "../common/structureservice.h"

#include "tessaly/defaultmodel.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/wizardstate.h"

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

// Opens the wizard state on a copy of definition with the sample database chosen, and the
// definition's tables chosen.
inline void start(veldra::WizardState &state, const std::shared_ptr<veldra::SQLInfo> &definition,
                  const std::shared_ptr<tessaly::ServiceProxy> &service = testservice::sqliteStructure())
{
    state.start(std::make_shared<tessaly::DefaultModel>(), service, definition);
    const tessaly::NameMap &tables = *state.definition()->tables();
    for (int i = 0; i < tables.count(); ++i)
        state.chosenTables->set(tables.key(i), tables.item(i));
    state.provider = "SQLite";
    state.dsn = "Sample";
    state.catalog = "main";
    state.definition()->dbInfo()->setProvider("SQLite");
    state.definition()->dbInfo()->setDsn("Sample");
    state.definition()->dbInfo()->setCatalog("main");
}

} // namespace testwizard
