#pragma once

#include <QString>

namespace Extractor {

/// Whether a line of text names an organisation (a company, shop or business), any letter case.
///
/// The rule: the line names an organisation when it holds
/// - a legal company form as a separate token: Sdn Bhd, Bhd, Pte Ltd, Pvt Ltd, Pty Ltd, Ltd, Ltda,
///   Limited, LLC, LLP, Inc., Incorporated, Corp., Corporation, PLC, GmbH, mbH, SARL, S.A., S.A.S.,
///   S.p.A., S.r.l., SRL, S.L., B.V., N.V., A/S, ApS, K.K., Sp. z o.o. anywhere in the line, and the
///   short forms that are also ordinary words or codes (AG, KG, AB, Oy, Oyj, SA, SAS, SpA, SL, BV, NV,
///   KK, ApS) only after another word and where the name ends: at the end of the line or
///   before a comma, bar, bullet, bracket or spaced dash ("Siemens AG", "Example AG - Street 1 - City",
///   not "Calgary AB T2P 1J9");
///   "Co." only with its dot or after "&" ("& Co");
/// - or a trade word as a whole word, singular or plural: Trading, Traders, Enterprise, Hardware,
///   Restaurant, Bakery, Pharmacy, Mart, Supermarket, Store, Cafe, Hotel, … and their common
///   counterparts in Malay, German, French, Spanish, Italian and Dutch (Restoran, Kedai, Apotheke,
///   Boulangerie, Farmacia, …), unless a number follows it ("Store #12" is a branch number);
/// - and no registration label (Company Reg No, Reg. No., GST No, VAT ID, Tax ID, ROC No, ABN, …) comes
///   before the first such token: "Company Reg No: 123456-X" and "GST No: 0012" are registration lines,
///   while "ACME TRADING (GST No: 0012)" still names the company.
///
/// A registration line mentions the company but is not its name, which is why it is excluded even
/// though it may contain "Company". Cost: one pass over the line's words with set lookups (a few
/// microseconds), built once per process.
bool looksLikeOrg(const QString &text);

} // namespace Extractor
