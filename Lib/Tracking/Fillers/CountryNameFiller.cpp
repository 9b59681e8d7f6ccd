#include "Tracking/Fillers/CountryNameFiller_p.h"

#include <QLocale>
#include <QString>

namespace Velkor::KT::Tracking::Fillers
{

void CountryNameFiller::Fill(std::map<std::string, std::string>& params)
{
    params["COUNTRY_NAME"] = QLocale::countryToString(QLocale::system().country()).toStdString();
}

}  // namespace Velkor::KT::Tracking::Fillers
