// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>
#include <QMap>
#include <QString>
#include <QVector>

/// What is known of the connected unit, and what the tool says about it on screen. It is a table of
/// one row, whose columns the widgets follow through QDataWidgetMapper.
///
/// Widgets cannot write through the item interface: whoever learns a value stores it by a setter. A
/// setter notifies its column even when the value stays the same. For the GUI thread only.
///
/// A `set` is a Set; any other number stores nothing and notifies nothing. A `motor` is a
/// Motor::Index of the rotors' catalogue.
class CDeviceDatabase : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// What SetConnectionStatus takes. Nothing sets ConnectionFailed: a failed attempt ends not
    /// connected.
    enum ConnectionStatus
    {
        ConnectionConnected = 0,
        ConnectionConnecting = 1,
        ConnectionNotConnected = 2,
        ConnectionFailed = 3,
        ConnectionReconnecting = 4,
    };

    /// The digit in a name is the set. Mappers bind by number; the BoardSet has no variant. Behind
    /// the first column of each motor stand its twelve parameters in the order of their ids.
    enum Column
    {
        ConnectButtonColumn = 0,
        ApplicationStatusColumn = 1,
        ConnectionStatusColumn = 2,
        IpAddressColumn = 3,
        MacAddressColumn = 4,
        SubnetMaskColumn = 5,
        FirmwareVersionColumn = 6,
        PartNumber0Column = 7,
        VariantColumn = 8,
        ProductIndex0Column = 9,
        SerialNumber0Column = 10,
        ProductionDate0Column = 11,
        TestInstructionIndex0Column = 12,
        BoardName0Column = 13,
        PartNumber1Column = 14,
        ProductIndex1Column = 15,
        SerialNumber1Column = 16,
        ProductionDate1Column = 17,
        TestInstructionIndex1Column = 18,
        BoardName1Column = 19,
        FirstAzimuthColumn = 20,
        FirstPolarColumn = 32,
        ColumnCount = 44,
    };

    /// Which of the unit's two EEPROM blocks a text is of.
    enum Set
    {
        DeviceSet = 0,
        BoardSet = 1,
        SetCount, ///< no set
    };

    /// The first version of the newer generation of units.
    static constexpr float FirstNewFirmware = 3.0F;

    CDeviceDatabase();
    ~CDeviceDatabase() override;

    /// 1 and ColumnCount, whatever the parent.
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;

    /// The display role and the edit role give the same, and so does every row. Motor parameters up
    /// to SlowMotionSpeed are an int, all other columns a text.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    QString GetIpAddress() const;
    QString GetMacAddress() const;
    QString GetSubnetMask() const;

    /// Of the DeviceSet.
    QString GetPartNumber() const;
    QString GetSerialNumber() const;

    /// As the unit gave it, with the carriage return of its answer.
    QString GetFirmwareVersion() const;
    QString ConnectionStatusText() const;

    /// The azimuth motor decides for both whether a parameter exists. 65535 when it has no such
    /// parameter, 0 when only `motor` has none. `found` may be null.
    ushort GetMotorParameter(int motor, int parameter, bool* found = nullptr) const;

    /// Adds the motor's parameters to `out`, or replaces them there. False, with `out` as it was,
    /// when there is no such motor.
    bool GetMotorParameters(int motor, QMap<int, ushort>& out) const;

    /// Empty when the last input for this motor was valid.
    QString GetMotorValidationError(int motor) const;

    /// Whether the unit cannot do what the firmware and options tabs offer. Nothing sets it.
    bool GetUnsupportedFlag() const;

    /// The one test for the older generation of units. True while the version is unknown or
    /// unreadable.
    bool IsFirmwareBelowVersion3() const;

    /// Whether a unit may be given this address. Six pairs of upper-case hexadecimal digits have to
    /// stand somewhere in the text, with ':' or '-' between them, and it must not begin with a
    /// letter from A to F. Sets `error` only when the result is false.
    bool ValidateMacAddress(QString mac, QString& error) const;

    /// `code` is a ConnectionStatus.
    void SetConnectionStatus(int code);
    void SetApplicationStatus(QString text);

    /// These store the address as QHostAddress writes it. A text that is no address leaves the
    /// field empty and gives false.
    bool SetIpAddress(QString text);
    bool SetSubnetMask(QString text);

    /// Stores upper case.
    void SetMacAddress(QString text);
    void SetFirmwareVersion(QString text);
    void SetPartNumber(QString text, int set = DeviceSet);

    /// The one field for both sets: stores for any `set`.
    void SetVariant(QString text, int set = DeviceSet);
    void SetProductIndex(QString text, int set = DeviceSet);

    /// Keeps the first 6 characters.
    void SetSerialNumber(QString text, int set = DeviceSet);
    void SetProductionDate(QString text, int set = DeviceSet);
    void SetTestInstructionIndex(QString text, int set = DeviceSet);
    void SetBoardName(QString text, int set = DeviceSet);

    /// Element n becomes parameter n. Parameters beyond the last element stay.
    void SetMotorParameters(int motor, QVector<ushort> values);
    void SetMotorParameter(int motor, int parameter, ushort value);
    void SetMotorValidationError(int motor, QString text);

    /// Forgets the unit, but not its variant. The motor columns are not notified, so their widgets
    /// go on showing the last values.
    void ResetData();

private:
    static bool NormalizeIpAddress(const QString& text, QString& out);

    bool HasMotorParameter(int parameter) const;
    QVariant MotorParameterOfColumn(int column) const;
    bool StoreIpAddress(Column column, const QString& text);
    void StoreText(Column column, const QString& text);
    void StoreTextOfSet(int set, Column columnOfSet0, Column columnOfSet1, const QString& text);
    void NotifyColumnChanged(int column);

    // ResetData() gives them their first values.
    qint32 connectionStatus{};
    bool unsupported{};
    QString applicationStatus;
    QString ipAddress;
    QString macAddress;
    QString subnetMask;
    QString partNumber[SetCount];
    QString productIndex[SetCount];
    QString variant;
    QString serialNumber[SetCount];
    QString productionDate[SetCount];
    QString testInstructionIndex[SetCount];
    QString boardName[SetCount];
    QString firmwareVersion;
    QMap<int, ushort> motorParameters[2];
    QString motorValidationError[2];

    // The field of each column in front of the motors. Null for a column whose text data() makes.
    QString* const textOfColumn[FirstAzimuthColumn];
};

/// The one database of the process. It exists from before main() until the process ends. The
/// constructors of other global objects must not ask for it.
CDeviceDatabase* TheDeviceDatabase();
