#pragma once

#include "authsetting/services/AuthDetail.h"
#include "backend/sealedfile/SealedFileError.h"

#include <QByteArrayView>
#include <QCborStreamReader>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <string>

namespace backend {

/// Reads the payload of an authorization file, trusting nothing in it; every function below
/// read() answers false for what encodeGrants() would not have written.
class GrantReader
{
public:
    /// `payload` must outlive the reader.
    explicit GrantReader(QByteArrayView payload);

    /// The whole payload into `*out`, which stays empty on an error.
    SealedFileError read(QVector<boost::shared_ptr<GW::CAuthDetail>>* out);

private:
    bool enterArray(quint64 minLength, quint64 maxLength, quint64* length);
    bool readGrants(QVector<boost::shared_ptr<GW::CAuthDetail>>* grants);
    bool readGrant(GW::CAuthDetail* grant);
    bool readText(std::string* text);
    bool readText(QString* text);
    bool readInteger(qint32* value);
    bool readRatio(double* value);

    QByteArrayView m_payload;
    QCborStreamReader m_reader;
};

} // namespace backend
