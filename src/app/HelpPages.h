#pragma once
#include <QUrl>

// The four pages of the Help menu.
namespace HelpPages {
inline const QUrl AppHomePage{QStringLiteral("https://www.zendrova.com/tamblo/")};
inline const QUrl CompanyHomePage{QStringLiteral("https://www.zendrova.com/")};
inline const QUrl SubmitTicket{QStringLiteral("https://www.zendrova.com/support/ticket/")};
inline const QUrl PrivacyPolicy{QStringLiteral("https://www.zendrova.com/privacy/")};
} // namespace HelpPages
