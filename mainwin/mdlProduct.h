// mainwin/mdlProduct.h
// What the splash and the version window say about the program.

#ifndef MAINWIN_MDLPRODUCT_H
#define MAINWIN_MDLPRODUCT_H

#include <QString>

namespace mdlProduct
{

/// One line on what the program is.
QString Description();
QString LegalNotice();

/// The community's page about the program.
QString SupportPage();
/// The community's entrance.
QString CommunityPage();

} // namespace mdlProduct

#endif
