// mainwin/mdlProduct.cpp
// What the splash and the version window say about the program.

#include "mainwin/mdlProduct.h"

using namespace Qt::StringLiterals;

namespace mdlProduct
{

QString Description() { return u"入門者ひろば掲示板リーダー"_s; }

QString LegalNotice() { return u"Copyright (c) 2026 The Tavora developers (MIT License)"_s; }

QString SupportPage() { return u"http://localhost:8932/tavora/"_s; }

QString CommunityPage() { return u"http://localhost:8932/"_s; }

} // namespace mdlProduct
