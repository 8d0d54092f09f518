#include "veldra/component/padwizard.h"

#include "veldra/wizard/frmwizard.h"

namespace veldra {

bool startPadWizard(std::unique_ptr<QDialog> &form, const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                    const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                    const std::shared_ptr<tessaly::zetVariable> &definition)
{
    if (!form)
        form = std::make_unique<frmWizard>();
    return static_cast<frmWizard &>(*form).StartWizard(model, proxy, definition);
}

} // namespace veldra
