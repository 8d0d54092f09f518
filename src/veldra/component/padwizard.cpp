#include "veldra/component/padwizard.h"

#include <QDialog>

namespace veldra {

bool startPadWizard(std::unique_ptr<QDialog> &form, const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                    const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                    const std::shared_ptr<tessaly::zetVariable> &definition)
{
    // Wired to frmWizard when the wizard joins the library:
    //     if (!form)
    //         form = std::make_unique<frmWizard>();
    //     return static_cast<frmWizard &>(*form).StartWizard(model, proxy, definition);
    Q_UNUSED(form);
    Q_UNUSED(model);
    Q_UNUSED(proxy);
    Q_UNUSED(definition);
    return false;
}

} // namespace veldra
