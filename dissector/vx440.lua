-- SPDX-License-Identifier: MIT
-- Shows in Wireshark and tshark what a VX440 control unit and the tool say to each other. It is written
-- from docs/protocol.md alone, so that it does not repeat a mistake of the tool or of the simulator.
--
-- Wireshark's own reassembly would hold a segment back until its frame is whole. An answer that stops
-- half-way would not be seen then, and such answers are what one looks for in a capture. The dissector
-- therefore does without it. The first pass over a capture cuts both directions of each connection into
-- records, and notes for each segment which records it has a part of. The dissector shows what these notes
-- say. A record is shown in the segment that has its last byte. The segments before it only say which frame
-- they are a part of.

local vx440 = Proto("vx440", "VX440 Control Unit")

local TCP_PORT = 50000

-- The seconds that the tool waits before each frame.
local DRAIN = 0.010
-- The seconds after which the tool has given up, or has read as much of the block as had come.
local LATE_AFTER = { acknowledgement = 10, block = 1, text = 2 }

local LONGEST_TEXT = 2000
local LARGEST_DATA = 1200
local STREAM_HEAD = 64
local EEPROM_REGION = 1200
local EEPROM_BLOCK = 44

-- The most bytes that are put together. A frame whose end the wire does not tell has at most 1206 from the
-- tool.
local LONGEST_OPEN_FRAME = 4096
-- The first pass does not show a longer record that is not whole. It would show it anew with each segment.
local LONGEST_UNFINISHED = 4096
local LONGEST_MNEMONIC = 20
-- Where the network holds frames of the tool back, a segment has a few of them at most.
local MOST_FRAMES_OF_A_SEGMENT = 100
local MOST_TEXTS_OF_A_PACKET = 4

local OLD, NEW = "below 3.0", "3.0 and later"
local BAD, GOOD, UNVERIFIED = 0, 1, 2
local REFUSED, DONE, NOT_UNDERSTOOD = 0, 1, 2

-- Fields and expert information

local fields, experts = {}, {}

-- define("a.b", "uint16", "Label", ...) makes the field vx440.a.b.
local function define(name, kind, label, ...)
    fields[name] = ProtoField[kind]("vx440." .. name, label, ...)
end

local function define_size(name, kind, label)
    define(name, kind, label, base.UNIT_STRING, { " byte", " bytes" })
end

local function define_status(name, label)
    define(name, "uint8", label, base.DEC, { [BAD] = "Bad", [GOOD] = "Good", [UNVERIFIED] = "Unverified" })
end

define("request", "none", "Request")
define("answer", "none", "Answer")
define("command", "string", "Command")
define("form", "string", "Form")
define("generation", "string", "Firmware generation")
define("part", "bytes", "Part of a frame")
define("part.of", "string", "Part of")
define("shown_in", "framenum", "Shown in")
define("begins_in", "framenum", "Begins in")
define("segments", "uint32", "Segments")
define("answer_in", "framenum", "Answer in", base.NONE, frametype.RESPONSE)
define("request_in", "framenum", "Request in", base.NONE, frametype.REQUEST)
define("time", "relative_time", "Time since the request")
define("acknowledgement", "uint8", "Acknowledgement", base.DEC,
    { [REFUSED] = "refused, or failed", [DONE] = "done", [NOT_UNDERSTOOD] = "as silence, or not understood" })
define("no_command", "bytes", "No command")
define("unasked", "bytes", "Nobody asked for")
define("zero", "bytes", "Zero")
define("filler", "bytes", "Filler")
define("uninterpreted", "bytes", "Not interpreted")

define("mac", "ether", "MAC address")
define("ip", "ipv4", "IP address")
define("mask", "ipv4", "Subnet mask")

define("identity", "string", "Identity")
define("identity.maker", "string", "Maker")
define("identity.product", "string", "Product")
define("identity.part_number", "string", "Part number")
define("identity.serial_number", "string", "Serial number")
define("identity.firmware", "string", "Firmware version")

define_size("block.length", "uint16", "Valid bytes")
define("block.sum", "uint16", "Sum", base.HEX)
define("block.sum.calculated", "uint16", "Calculated sum", base.HEX)
define_status("block.sum.status", "Sum status")
define("block.sequence", "uint16", "Sequence number")
define("block.data", "bytes", "Data")
define("block.padding", "bytes", "Padding")
define_size("image.length", "uint32", "Length of the firmware file")
define("end.sum", "uint32", "Sum of the block sums", base.HEX)
define("end.sum.calculated", "uint32", "Calculated sum", base.HEX)
define_status("end.sum.status", "Sum status")
define_size("end.length", "uint32", "Length of the stream")
define_size("end.length.acknowledged", "uint32", "Acknowledged")
define_status("end.length.status", "Length status")

define("eeprom.offset", "uint16", "Memory offset")
define_size("eeprom.length", "uint16", "Number of bytes")
define("eeprom.region", "string", "Region")
define("eeprom.data", "bytes", "EEPROM data")
define("eeprom.block", "none", "EEPROM block")
define("eeprom.block.type", "uint16", "Block type")
define("eeprom.block.reserved", "bytes", "Not interpreted")
define("eeprom.block.part_number", "uint32", "Part number")
define("eeprom.block.variant", "uint8", "Variant")
define("eeprom.block.code", "uint8", "Hardware code")
define("eeprom.block.index", "int16", "Product index, hundredths")
define("eeprom.block.serial_number", "uint32", "Serial number")
define("eeprom.block.date", "string", "Production date")
define("eeprom.block.test_index", "int16", "Test instruction index, hundredths")
define("eeprom.block.name", "string", "Name")

define("options", "string", "Fitted options")
define("descriptions", "string", "Descriptions of the options")

-- The rotator parameters in the order of their ids.
local PARAMETERS = {
    { "smd", "Slow Motion Difference (SMD)" },
    { "mhd", "Motion Hang Up Difference (MHD)" },
    { "sd", "Step Difference (SD)" },
    { "ss", "Step Sleep (SS)" },
    { "pd", "Pulse Duration (PD)" },
    { "od", "Max Position Difference (OD)" },
    { "ors", "Max Position From Right (ORS)" },
    { "ols", "Max Position From Left (OLS)" },
    { "mmhl", "Max Motion Hang Up Loop (MMHL)" },
    { "mot", "Loops Inside (MOT)" },
    { "sms", "Slow Motion Speed (SMS)", base.UNIT_STRING, { " %" } },
    { "type", "Rotor type", base.DEC, { [0] = "potentiometer", [1] = "pulse" } },
}
local WORDS = { [OLD] = 10, [NEW] = 12 }

for _, motor in ipairs({ "azimuth", "polar" }) do
    define("motor." .. motor, "none", motor == "azimuth" and "Azimuth rotator" or "Polar rotator")
    for _, parameter in ipairs(PARAMETERS) do
        define("motor." .. motor .. "." .. parameter[1], "uint16", parameter[2], parameter[3] or base.DEC,
            parameter[4])
    end
end

-- The places of the options, in the order in which they travel.
local PLACES = { { "dc_feed_1", "DC feed 1" }, { "dc_feed_2", "DC feed 2" }, { "attenuator", "Attenuator" },
    { "bank_1", "Filter bank 1" }, { "bank_2", "Filter bank 2" }, { "amplifier", "Amplifier stage" } }
for _, bank in ipairs({ { 1, 6 }, { 2, 5 } }) do
    for filter = 1, bank[2] do
        PLACES[#PLACES + 1] = { string.format("bank_%d.filter_%d", bank[1], filter),
            string.format("Filter bank %d, filter %d", bank[1], filter) }
    end
end
PLACES[#PLACES + 1] = { "azimuth", "Azimuth rotator" }
PLACES[#PLACES + 1] = { "polar", "Polar rotator" }

for _, place in ipairs(PLACES) do
    define("option." .. place[1], "string", place[2])
    define("description." .. place[1], "string", place[2])
end

vx440.fields = fields

local function define_expert(name, label, group, severity)
    experts[name] = ProtoExpert.new("vx440.expert." .. name, label, group, severity)
end

define_expert("refused", "Refused, or failed", expert.group.RESPONSE_CODE, expert.severity.WARN)
define_expert("no_answer", "No answer", expert.group.SEQUENCE, expert.severity.WARN)
define_expert("late", "The answer comes late", expert.group.SEQUENCE, expert.severity.WARN)
define_expert("unasked", "Nobody asked for these bytes", expert.group.SEQUENCE, expert.severity.WARN)
define_expert("sequence", "Block out of sequence", expert.group.SEQUENCE, expert.severity.WARN)
define_expert("sum", "Wrong sum", expert.group.CHECKSUM, expert.severity.ERROR)
define_expert("length", "The length does not fit", expert.group.PROTOCOL, expert.severity.WARN)
define_expert("no_command", "No command", expert.group.MALFORMED, expert.severity.ERROR)
define_expert("not_understood", "Not understood", expert.group.PROTOCOL, expert.severity.WARN)
define_expert("not_zero", "These bytes have to be zero", expert.group.PROTOCOL, expert.severity.WARN)
define_expert("not_captured", "The capture lacks bytes of this segment", expert.group.UNDECODED,
    expert.severity.NOTE)

vx440.experts = experts

-- Bytes

-- The big-endian number in `size` bytes of a text from `position`, counted from 1.
local function number_at(text, position, size)
    local number = 0
    for i = position, position + size - 1 do
        number = number * 256 + text:byte(i)
    end
    return number
end

local function sum_of(text)
    local sum = 0
    for i = 1, #text do
        sum = sum + text:byte(i)
    end
    return sum
end

local function split(text, separator)
    local pieces, from = {}, 1
    while true do
        local at = text:find(separator, from, true)
        pieces[#pieces + 1] = { from = from, text = text:sub(from, (at or 0) - 1) }
        if not at then
            return pieces
        end
        from = at + 1
    end
end

local function count_of(number, noun)
    return string.format("%d %s%s", number, noun, number == 1 and "" or "s")
end

-- The generation that a version text names. Only the whole part is read, because no locale changes it.
local function generation_of(version)
    local whole = version:match("^%s*%+?(%d+)%.?%d*%s*$")
    return whole and tonumber(whole) >= 3 and NEW or OLD
end

-- Turns a text of the wire into one for Wireshark, where texts are UTF-8 and end at a zero.
local function readable(text)
    return (text:gsub("[\0\128-\255]", function(character)
        local byte = character:byte()
        return byte == 0 and "\226\144\128" or string.char(192 + math.floor(byte / 64), 128 + byte % 64)
    end))
end

local function add_text(tree, name, range)
    return tree:add(fields[name], range, readable(range:raw()))
end

-- Reads the bytes of a record from the front and adds fields to a tree. A field that is not whole is not
-- added.
local Cursor = {}
Cursor.__index = Cursor

local function cursor_over(range, tree)
    return setmetatable({ range = range, tree = tree, position = 0 }, Cursor)
end

function Cursor:left()
    return self.range:len() - self.position
end

-- Gives the next bytes, also as a text. Gives nothing when there are fewer.
function Cursor:take(size)
    if size < 1 or self:left() < size then
        return nil
    end
    local range = self.range(self.position, size)
    self.position = self.position + size
    return range, range:raw()
end

-- Adds a field of this size. Gives its item and its bytes, or nothing.
function Cursor:add(name, size, ...)
    local range, text = self:take(size)
    if range then
        return self.tree:add(fields[name], range, ...), text
    end
end

function Cursor:add_little_endian(name, size)
    local range = self:take(size)
    return range and self.tree:add_le(fields[name], range)
end

-- Adds a text. A carriage return that ends it belongs to the field's bytes, but not to its value. Gives the
-- item, the text's bytes and the text. Gives nothing when there is no text.
function Cursor:add_line(name, size)
    local range, text = self:take(size)
    local length = text and #text - (text:sub(-1) == "\r" and 1 or 0)
    if not range or length == 0 then
        self.tree:add_proto_expert_info(experts.not_understood, "An empty text")
        return nil
    end
    local line = text:sub(1, length)
    return self.tree:add(fields[name], range, readable(line)), range, line
end

function Cursor:add_number(name, size)
    local item, text = self:add(name, size)
    return text and number_at(text, 1, size), item
end

function Cursor:add_zeros(size)
    local item, text = self:add("zero", size)
    if text and text:find("[^\0]") then
        item:add_proto_expert_info(experts.not_zero)
    end
end

-- Gives a cursor over the next bytes. Their fields hang below an item of their own.
function Cursor:below(name, size)
    local range = self:take(size)
    return range and cursor_over(range, self.tree:add(fields[name], range))
end

local function add_generated(tree, name, ...)
    local item = tree:add(fields[name], ...)
    item:set_generated()
    return item
end

local function complain(item, name, ...)
    item:add_proto_expert_info(experts[name], string.format(...))
end

-- What the payloads and answers show. Each function gives a few words for the list of packets.

local function show_motor(cursor, motor, count)
    local words = math.min(count, math.floor(cursor:left() / 2))
    local below = cursor:below("motor." .. motor, 2 * words)
    for id = 1, words do
        below:add("motor." .. motor .. "." .. PARAMETERS[id][1], 2)
    end
end

local function show_addresses(cursor)
    cursor:add("mac", 6)
    local ip = cursor:take(4)
    if ip then
        cursor.tree:add(fields.ip, ip)
        cursor:add("mask", 4)
        return tostring(ip:ipv4())
    end
end

-- Adds the fields of an identity text, which stand between commas. The identity of an answer has the
-- version, the identity of a configuration has not.
local function show_identity_fields(cursor, size, count)
    local item, range, text = cursor:add_line("identity", size)
    if not item then
        return nil
    end
    local found = split(text, ",")
    local function add(name, piece, from)
        if #piece > 0 then
            add_text(item, "identity." .. name, range(from - 1, #piece))
        end
    end
    add("maker", found[1].text, 1)
    if found[2] then
        add("product", found[2].text, found[2].from)
    end
    local numbers = found[3] and split(found[3].text, "/") or {}
    if #found < count or #numbers < 2 then
        complain(item, "not_understood", "An identity has %d fields, the third with a \"/\"", count)
        return nil
    end
    add("part_number", numbers[1].text, found[3].from)
    add("serial_number", numbers[2].text, found[3].from + numbers[2].from - 1)
    if count < 4 then
        return nil
    end
    add("firmware", found[4].text, found[4].from)
    add_generated(item, "generation", generation_of(found[4].text))
    return "firmware " .. readable(found[4].text)
end

local function show_identity(cursor)
    return show_identity_fields(cursor, cursor:left(), 4)
end

local function block_generation(record)
    if record.size == 67 then
        return OLD
    end
    return record.size == 75 and NEW or record.generation or NEW
end

local function show_configuration(cursor, record)
    local generation = block_generation(record)
    add_generated(cursor.tree, "generation", generation)
    show_motor(cursor, "azimuth", WORDS[generation])
    show_motor(cursor, "polar", WORDS[generation])
    local ip = show_addresses(cursor)
    cursor:add("uninterpreted", 13)
    if record.generation and generation ~= record.generation then
        complain(cursor.tree, "length", "This is the block of firmware %s", generation)
    end
    return ip
end

local function show_new_address(cursor)
    local ip = cursor:take(4)
    if ip then
        cursor.tree:add(fields.ip, ip)
        cursor:add("mask", 4)
        return tostring(ip:ipv4())
    end
end

-- Tells whether a frame has the length that its unit's generation asks for.
local function check_generation(cursor, record)
    local wanted = record.generation and record.command.sizes[record.generation]
    if wanted and wanted ~= record.size then
        complain(cursor.tree, "length", "The frame has %d bytes, that of firmware %s has %d", record.size,
            record.generation, wanted)
    end
end

local function show_configuring(cursor, record)
    check_generation(cursor, record)
    if record.size <= 10 then
        add_generated(cursor.tree, "form", "short")
        cursor:add("mac", 6)
        return "MAC address"
    end
    add_generated(cursor.tree, "form", "long")
    show_motor(cursor, "azimuth", WORDS[OLD])
    show_motor(cursor, "polar", WORDS[OLD])
    show_addresses(cursor)
    cursor:add_zeros(13)
    local identity = cursor:take(60)
    if identity then
        local at = identity:raw():find("\r", 1, true)
        local text = cursor_over(identity, cursor.tree)
        show_identity_fields(text, at or 60, 3)
        text:add_zeros(text:left())
    end
    return "identity and MAC address"
end

local function show_motor_frame(motor)
    return function(cursor, record)
        check_generation(cursor, record)
        show_motor(cursor, motor, #PARAMETERS)
    end
end

local function show_stream_head(range, tree)
    local head = cursor_over(range, tree)
    head:add_zeros(3)
    head:add("image.length", 4)
    head:add_zeros(STREAM_HEAD - 7)
end

local function show_firmware_block(cursor, record)
    local length, length_item = cursor:add_number("block.length", 2)
    local sum, sum_item = cursor:add_number("block.sum", 2)
    local sequence, sequence_item = cursor:add_number("block.sequence", 2)
    cursor:add_zeros(14)
    if not sequence then
        return nil
    end
    if length < 1 or length > LARGEST_DATA then
        complain(length_item, "length", "A block has 1 to %d valid bytes", LARGEST_DATA)
    end
    local block = record.block
    if block then
        local good = sum == block.sum
        add_generated(cursor.tree, "block.sum.calculated", block.sum)
        add_generated(cursor.tree, "block.sum.status", good and GOOD or BAD)
        if not good then
            complain(sum_item, "sum", "The sum is 0x%04x and should be 0x%04x", sum, block.sum)
        end
        if block.expected and block.expected ~= sequence then
            complain(sequence_item, "sequence", "Block %d where block %d is due", sequence, block.expected)
        end
    end
    local item, data = cursor:add("block.data", math.min(length, cursor:left()))
    if data and sequence == 0 and #data >= STREAM_HEAD then
        show_stream_head(cursor.range(cursor.position - #data, #data), item)
    end
    local padding, text = cursor:add("block.padding", cursor:left())
    if text and text:find("[^\0]") then
        padding:add_proto_expert_info(experts.not_zero)
    end
    return string.format("block %d, %s", sequence, count_of(length, "byte"))
end

local function show_end(cursor, record)
    local sum, sum_item = cursor:add_number("end.sum", 4)
    local length, length_item = cursor:add_number("end.length", 4)
    if not length then
        return nil
    end
    local transfer = record.transfer
    if transfer then
        add_generated(cursor.tree, "end.sum.calculated", transfer.sum)
        add_generated(cursor.tree, "end.length.acknowledged", transfer.length)
    end
    local function status(name, value, expected)
        local state = not transfer and UNVERIFIED or value == expected and GOOD or BAD
        add_generated(cursor.tree, name, state)
        return state == BAD
    end
    if status("end.sum.status", sum, transfer and transfer.sum) then
        complain(sum_item, "sum", "The sums of the acknowledged blocks are 0x%08x", transfer.sum)
    end
    if status("end.length.status", length, transfer and transfer.length) then
        complain(length_item, "length", "The acknowledged blocks have %s", count_of(transfer.length, "byte"))
    end
    return count_of(length, "byte")
end

local function show_filler(cursor)
    cursor:add("filler", cursor:left())
end

local function show_index(cursor, name)
    local range = cursor:take(2)
    if range then
        local value = range:le_int()
        local sign = value < 0 and "-" or ""
        local item = cursor.tree:add_le(fields[name], range)
        item:append_text(string.format(" (%s%d.%02d)", sign, math.floor(math.abs(value) / 100),
            math.abs(value) % 100))
    end
end

local function show_date(cursor)
    local range = cursor:take(2)
    if range then
        local days = range:le_uint()
        local date = string.format("%04d-%02d-%02d", math.floor(days / 512) + 1980,
            math.floor(days / 32) % 16, days % 32)
        cursor.tree:add(fields["eeprom.block.date"], range, date)
    end
end

-- The integers of an EEPROM block are the only ones with the lowest byte first.
local function show_eeprom_block(range, tree)
    local cursor = cursor_over(range, tree):below("eeprom.block", EEPROM_BLOCK)
    cursor:add_little_endian("eeprom.block.type", 2)
    cursor:add("eeprom.block.reserved", 10)
    cursor:add_little_endian("eeprom.block.part_number", 4)
    cursor:add("eeprom.block.variant", 1)
    cursor:add("eeprom.block.code", 1)
    show_index(cursor, "eeprom.block.index")
    cursor:add_little_endian("eeprom.block.serial_number", 4)
    show_date(cursor)
    cursor:add("eeprom.block.reserved", 2)
    show_index(cursor, "eeprom.block.test_index")
    local name, text = cursor:take(14)
    cursor.tree:add(fields["eeprom.block.name"], name, readable(text:gsub("\0", "")))
end

-- Shows what the memory holds from this offset on. A region's block is shown when the data begin with it.
local function show_memory(cursor, offset)
    local size = cursor:left()
    local item, data = cursor:add("eeprom.data", size)
    if not item then
        return
    end
    local region = offset < EEPROM_REGION and "device" or offset < 2 * EEPROM_REGION and "board"
    if region then
        add_generated(item, "eeprom.region", region)
    end
    local is_block = data:sub(1, 2) == "\2\0" and size >= EEPROM_BLOCK
    if region and offset % EEPROM_REGION == 0 and is_block then
        show_eeprom_block(cursor.range(cursor.position - size, size), item)
    end
end

local function show_eeprom_write(cursor)
    local offset = cursor:add_number("eeprom.offset", 2)
    if not offset then
        return nil
    end
    local size = cursor:left()
    if size > LARGEST_DATA then
        complain(cursor.tree, "length", "%d bytes of data, and no more than %d are sent", size, LARGEST_DATA)
    end
    show_memory(cursor, offset)
    return string.format("%s at %d", count_of(size, "byte"), offset)
end

local function show_eeprom_request(cursor)
    local length = cursor:add_number("eeprom.length", 2)
    local offset = cursor:add_number("eeprom.offset", 2)
    return offset and string.format("%s at %d", count_of(length, "byte"), offset)
end

local function show_eeprom_answer(cursor, record)
    local size = cursor:left()
    local offset = record.request.memory_offset
    if offset then
        add_generated(cursor.tree, "eeprom.offset", offset)
    end
    show_memory(cursor, offset or 2 * EEPROM_REGION)
    return count_of(size, "byte")
end

-- Adds the names or descriptions of all places, which come in one text.
local function show_places(cursor, name, separator)
    local item, range, text = cursor:add_line(name, cursor:left())
    if not item then
        return nil
    end
    local one = name:sub(1, -2)
    local found = split(text, separator)
    for index, piece in ipairs(found) do
        if PLACES[index] and #piece.text > 0 then
            add_text(item, one .. "." .. PLACES[index][1], range(piece.from - 1, #piece.text))
        end
    end
    if #found ~= #PLACES then
        complain(item, "length", "%s, and there are %d places", count_of(#found, one), #PLACES)
    end
    return count_of(#found, one)
end

local function show_places_frame(name, separator)
    return function(cursor, record)
        if record.size >= LARGEST_DATA then
            complain(cursor.tree, "length", "A text frame of %d bytes or more is not sent", LARGEST_DATA)
        end
        return show_places(cursor, name, separator)
    end
end

local function show_places_answer(name, separator)
    return function(cursor)
        return show_places(cursor, name, separator)
    end
end

local ACKNOWLEDGEMENTS = { ["0"] = REFUSED, ["1"] = DONE }

-- The digit alone is enough, with or without its carriage return.
local function acknowledgement_of(text)
    return (#text == 1 or text:sub(2) == "\r") and ACKNOWLEDGEMENTS[text:sub(1, 1)] or NOT_UNDERSTOOD
end

local function show_acknowledgement(cursor)
    local range, text = cursor:take(cursor:left())
    local result = acknowledgement_of(text)
    local item = cursor.tree:add(fields.acknowledgement, range, result)
    if result == REFUSED then
        item:add_proto_expert_info(experts.refused)
    elseif text == "2\r" or text == "2" then
        complain(item, "not_understood", "The tool takes this for silence, and keeps waiting")
    elseif result == NOT_UNDERSTOOD then
        complain(item, "not_understood", "No acknowledgement")
    end
    return result == DONE and "done" or result == REFUSED and "refused" or "not understood"
end

-- The catalogue

local commands = {}

-- All commands by their mnemonics. A command has a size, or a size for each generation, or it is open: then
-- its frame ends where the bytes end. Its answer is an acknowledgement, a block, a text or nothing.
local function catalogue(mnemonic, purpose, definition)
    definition.mnemonic = mnemonic
    definition.purpose = purpose
    if definition.answer == "acknowledgement" then
        definition.show_answer = show_acknowledgement
    end
    commands[mnemonic] = definition
end

catalogue("*IDN?", "identity", { size = 6, answer = "text", show_answer = show_identity })
catalogue("CF0", "configuration", { size = 4, answer = "block", show_answer = show_configuration })
catalogue("CF1", "new IP address", { size = 12, show = show_new_address })
catalogue("CF2", "configuring", { sizes = { [OLD] = 131, [NEW] = 10 }, show = show_configuring })
catalogue("CF3", "firmware", { size = 1224, answer = "acknowledgement", show = show_firmware_block })
catalogue("CF4", "end of the firmware", { size = 12, show = show_end })
catalogue("CF5", "installation", { size = 259, show = show_filler })
catalogue("CF6", "EEPROM write", { open = true, answer = "acknowledgement", show = show_eeprom_write })
catalogue("CF7", "EEPROM read",
    { size = 8, answer = "block", show = show_eeprom_request, show_answer = show_eeprom_answer })
catalogue("CF8", "validation of the firmware", { size = 4, answer = "acknowledgement" })
catalogue("CF9", "options",
    { open = true, answer = "acknowledgement", show = show_places_frame("options", ",") })
catalogue("CF10", "descriptions",
    { open = true, answer = "acknowledgement", show = show_places_frame("descriptions", ";") })
catalogue("HCF", "azimuth rotator",
    { sizes = { [OLD] = 24, [NEW] = 28 }, show = show_motor_frame("azimuth") })
catalogue("VCF", "polar rotator",
    { sizes = { [OLD] = 24, [NEW] = 28 }, show = show_motor_frame("polar") })
catalogue("GET:OPTION:INTERNAL?", "options",
    { size = 21, answer = "text", show_answer = show_places_answer("options", ",") })
catalogue("GET:OPTION:DESC?", "descriptions",
    { size = 17, answer = "text", show_answer = show_places_answer("descriptions", ";") })

-- Gives the command that a text begins with, with its carriage return. Also tells whether the whole text is
-- the beginning of a command, so that it may become one.
local function command_at(text, from)
    local head = text:sub(from, from + LONGEST_MNEMONIC)
    local at = head:find("\r", 1, true)
    if at then
        return commands[head:sub(1, at - 1)], false
    end
    for mnemonic in pairs(commands) do
        if mnemonic:sub(1, #head) == head then
            return nil, true
        end
    end
    return nil, false
end

-- The first pass: what has been seen of each connection and each unit

local conversations, units, notes

function vx440.init()
    conversations, units, notes = {}, {}, {}
end

local function unit_at(address, port)
    for _, unit in ipairs(units) do
        if unit.port == port and unit.address == address then
            return unit
        end
    end
    local unit = { address = address, port = port }
    units[#units + 1] = unit
    return unit
end

local function conversation_of(tool, tool_port, unit, unit_port)
    local ports = tool_port .. ":" .. unit_port
    conversations[ports] = conversations[ports] or {}
    for _, conversation in ipairs(conversations[ports]) do
        if conversation.tool == tool and conversation.unit.address == unit then
            return conversation
        end
    end
    local conversation = { tool = tool, unit = unit_at(unit, unit_port) }
    table.insert(conversations[ports], conversation)
    return conversation
end

-- A record is a request, an answer, bytes that are no command, or bytes that nobody asked for. `whole` says
-- that its last byte is there. `may_end` says that it may be whole, where the wire does not tell.
local function new_record(kind, conversation)
    return { kind = kind, size = 0, pieces = {}, parts = 0, generation = conversation.unit.generation }
end

local function text_of(record)
    if #record.pieces > 1 then
        record.pieces = { table.concat(record.pieces) }
    end
    return record.pieces[1] or ""
end

-- Gives the record the next bytes of the segment, and notes that they belong to it.
local function append(record, segment, size)
    record.pieces[#record.pieces + 1] = segment.bytes:sub(segment.position, segment.position + size - 1)
    record.size = record.size + size
    record.time = segment.time
    record.frame = segment.frame
    record.first_frame = record.first_frame or segment.frame
    local part = segment.parts[#segment.parts]
    if part and part.record == record then
        part.size = part.size + size
    else
        part = { record = record, offset = segment.position - 1, size = size }
        segment.parts[#segment.parts + 1] = part
        record.parts = record.parts + 1
    end
    record.last_part = part
    segment.position = segment.position + size
end

-- Tells how many bytes of `text` belong to a frame with this command, and whether the frame is whole then or
-- may be whole. The frame had `before` bytes before this segment.
local function measure_by_generation(command, text, generation, before)
    local wanted = command.sizes[generation]
    local small = math.min(command.sizes[OLD], command.sizes[NEW])
    local large = math.max(command.sizes[OLD], command.sizes[NEW])
    if #text == small then
        return small, wanted == small, true
    elseif #text > small and before < small and command_at(text, small + 1) then
        return small, true
    elseif #text == large then
        return large, true
    end
    local size = wanted or large
    return size, #text >= size
end

-- Counts the bytes before something that is a command or may become one.
local function measure_no_command(text)
    local at = text:find("\r", 1, true)
    while at and at < #text do
        local command, beginning = command_at(text, at + 1)
        if command or beginning then
            return at
        end
        at = text:find("\r", at + 1, true)
    end
    return #text
end

-- Does the same for the frame that a text begins with, and also gives its command.
local function measure_request(text, generation, before)
    local command, beginning = command_at(text, 1)
    if beginning then
        return #text, false, false
    elseif not command then
        return measure_no_command(text), true, false
    elseif command.open then
        return math.min(#text, LONGEST_OPEN_FRAME), #text >= LONGEST_OPEN_FRAME, true, command
    elseif command.sizes then
        local size, whole, may_end = measure_by_generation(command, text, generation, before)
        return size, whole, may_end, command
    end
    return command.size, #text >= command.size, false, command
end

-- Tells whether the bytes of a segment go on with a request that is not whole, or may not be whole. They do
-- not when an answer came between, when all waits for an answer are over, or when they begin with a command.
-- If bytes of the request are missing for certain, or only the beginning of a command is there, they may
-- look like a command by chance. Then the pause before the segment decides, too.
local function goes_on(request, segment)
    if not request or request.whole or request.answer then
        return false
    end
    local pause = segment.time - request.time
    local command, beginning = command_at(segment.bytes, 1)
    if command and (request.may_end or pause >= DRAIN) then
        return false
    elseif beginning and request.may_end and pause >= DRAIN then
        return false
    end
    return not request.may_end or pause < LATE_AFTER.acknowledgement
end

local function begin_transfer(unit, sequence)
    if sequence == 0 then
        unit.transfer = { due = 0, sum = 0, length = 0 }
    end
    return unit.transfer
end

-- Notes what the first pass has to know of requests, for checks and for their answers.
local LEARN_FROM_REQUEST = {
    CF1 = function(conversation, text)
        local octets = { text:byte(5, 8) }
        local unit = unit_at(Address.ip(table.concat(octets, ".")), conversation.unit.port)
        unit.generation = unit.generation or conversation.unit.generation
    end,
    CF3 = function(conversation, text, request)
        local length = math.min(number_at(text, 5, 2), LARGEST_DATA)
        local sequence = number_at(text, 9, 2)
        local transfer = begin_transfer(conversation.unit, sequence)
        request.block = { sum = sum_of(text:sub(25, 24 + length)) % 65536, told = number_at(text, 7, 2),
            length = length, sequence = sequence, expected = transfer and transfer.due }
    end,
    CF4 = function(conversation, _, request)
        request.transfer = conversation.unit.transfer
    end,
    CF7 = function(_, text, request)
        request.answer_size = number_at(text, 5, 2)
        request.memory_offset = number_at(text, 7, 2)
    end,
}

local LEARN_FROM_ANSWER = {
    ["*IDN?"] = function(conversation, text)
        local found = split(text, ",")
        if #found >= 4 and found[3].text:find("/", 1, true) then
            conversation.unit.generation = generation_of(found[4].text)
        end
    end,
    CF0 = function(conversation, text, answer)
        conversation.unit.generation = answer.generation or #text == 75 and NEW or OLD
    end,
    CF3 = function(conversation, text, answer)
        local transfer, block = conversation.unit.transfer, answer.request.block
        if transfer and block and block.sequence == transfer.due and acknowledgement_of(text) == DONE then
            transfer.due = transfer.due + 1
            transfer.sum = transfer.sum + block.told
            transfer.length = transfer.length + block.length
        end
    end,
}

local function learn(lessons, conversation, record)
    local lesson = record.command and lessons[record.command.mnemonic]
    if lesson then
        lesson(conversation, text_of(record), record)
    end
end

local function take_the_rest(conversation, segment)
    local rest = new_record("request", conversation)
    rest.whole, rest.too_many = true, true
    append(rest, segment, #segment.bytes - segment.position + 1)
    conversation.open_request = nil
end

local function follow_request(conversation, segment)
    if #segment.parts >= MOST_FRAMES_OF_A_SEGMENT then
        take_the_rest(conversation, segment)
        return
    end
    local request = conversation.open_request
    if not goes_on(request, segment) then
        request = new_record("request", conversation)
    end
    local known = request.command
    -- Takes no more than a frame can have. Otherwise a segment of many small frames would be copied over and
    -- over.
    local text = text_of(request) ..
        segment.bytes:sub(segment.position, segment.position + LONGEST_OPEN_FRAME)
    local size, whole, may_end, command = measure_request(text, request.generation, request.size)
    request.command, request.whole, request.may_end, request.wanted = command, whole, may_end, size
    append(request, segment, math.min(size, #text) - request.size)
    if command and not known then
        conversation.request, conversation.open_answer = request, nil
    end
    if whole and command then
        learn(LEARN_FROM_REQUEST, conversation, request)
    end
    conversation.open_request = not whole and request or nil
end

-- Tells how many bytes an answer has, with those that are still to come; whether it is whole with what is left
-- of the segment, or may be whole; and whether it goes on for a number of bytes that nobody knows.
local function measure_text_answer(answer, segment)
    local at = segment.bytes:find("\r", segment.position, true)
    local size = answer.size + (at or #segment.bytes) - segment.position + 1
    return math.min(size, LONGEST_TEXT), at ~= nil or size >= LONGEST_TEXT, false, not at
end

local function measure_configuration(answer, there)
    local wanted = answer.generation == OLD and 67 or 75
    if there == 75 then
        return 75, true
    end
    return wanted, there >= wanted, there == 67 and not answer.generation
end

local function measure_answer(answer, segment)
    local command = answer.command
    local there = answer.size + #segment.bytes - segment.position + 1
    if command.answer == "text" then
        return measure_text_answer(answer, segment)
    elseif command.mnemonic == "CF0" then
        return measure_configuration(answer, there)
    end
    local size = command.answer == "acknowledgement" and 2 or answer.request.answer_size or there
    return size, there >= size
end

local function begin_answer(conversation)
    local request = conversation.request
    local expected = request and request.command.answer and request.answer_size ~= 0
    if not expected or request.answered then
        return nil
    end
    local answer = new_record("answer", conversation)
    answer.request, answer.command = request, request.command
    request.answer = request.answer or answer
    return answer
end

local function follow_answer(conversation, segment)
    local answer = conversation.open_answer or begin_answer(conversation)
    if not answer then
        local unasked = new_record("unasked", conversation)
        unasked.request = conversation.request
        unasked.whole = true
        append(unasked, segment, #segment.bytes - segment.position + 1)
        return
    end
    local size, whole, may_end, is_open = measure_answer(answer, segment)
    local left = #segment.bytes - segment.position + 1
    answer.wanted, answer.whole, answer.may_end = not is_open and size or nil, whole, may_end
    append(answer, segment, math.min(size - answer.size, left))
    conversation.open_answer = not whole and answer or nil
    if whole or may_end then
        learn(LEARN_FROM_ANSWER, conversation, answer)
    end
    -- The tool takes this acknowledgement for silence and goes on waiting.
    answer.request.answered = whole and not (answer.command.answer == "acknowledgement" and
        text_of(answer) == "2\r")
end

local function forget_bytes_of_whole_records(parts)
    for _, part in ipairs(parts) do
        if part.record.whole and part.record.parts == 1 then
            part.record.pieces = {}
        end
    end
end

-- Cuts a segment into the parts of records that it holds.
local function follow(conversation, segment, from_tool)
    while segment.position <= #segment.bytes do
        if from_tool then
            follow_request(conversation, segment)
        else
            follow_answer(conversation, segment)
        end
    end
    if segment.lacks > 0 then
        conversation.open_request, conversation.open_answer = nil, nil
    end
    forget_bytes_of_whole_records(segment.parts)
    return segment.parts
end

-- Tells who has sent a segment. The unit is at the port for which the dissector was called.
local function is_from_tool(pinfo)
    if pinfo.src_port == pinfo.match_uint then
        return pinfo.dst_port == pinfo.match_uint
    end
    return pinfo.dst_port == pinfo.match_uint or pinfo.dst_port < pinfo.src_port
end

local function parts_of(tvb, pinfo)
    -- A packet may hold several segments, each somewhere else.
    local key = pinfo.number .. ":" .. tvb:offset()
    if not pinfo.visited then
        local from_tool = is_from_tool(pinfo)
        local conversation = from_tool and
            conversation_of(pinfo.src, pinfo.src_port, pinfo.dst, pinfo.dst_port) or
            conversation_of(pinfo.dst, pinfo.dst_port, pinfo.src, pinfo.src_port)
        local segment = { bytes = tvb:raw(), position = 1, parts = {}, time = pinfo.rel_ts,
            frame = pinfo.number, lacks = tvb:reported_len() - tvb:len() }
        notes[key] = follow(conversation, segment, from_tool)
    end
    return notes[key] or {}
end

-- The tree and the list of packets

local function name_of(record)
    if record.kind == "unasked" or not record.command then
        return record.kind == "unasked" and "bytes that nobody asked for" or "no command"
    end
    local name = record.command.mnemonic
    return record.kind == "answer" and "answer to " .. name or name
end

-- Says that a segment has bytes of a frame whose end, or last byte so far, is in another segment.
local function show_part(part, range, tree)
    local record = part.record
    local item = tree:add(fields.part, range)
    add_generated(item, "part.of", name_of(record))
    if record.last_part ~= part then
        add_generated(item, "shown_in", record.frame)
    end
    return "part of " .. name_of(record)
end

local function show_no_command(record, range, tree)
    local item = tree:add(fields.no_command, range)
    if record.too_many then
        complain(item, "no_command", "More than %d frames in one segment", MOST_FRAMES_OF_A_SEGMENT)
    elseif record.whole then
        item:add_proto_expert_info(experts.no_command)
    else
        complain(item, "no_command", "The beginning of a command, and no more")
    end
    return string.format("no command, %s", count_of(record.size, "byte"))
end

local function show_unasked(record, range, tree)
    local item = tree:add(fields.unasked, range)
    local request = record.request
    if request then
        add_generated(item, "request_in", request.frame)
        local why = request.command.answer and "to which the answer is whole" or "which has no answer"
        complain(item, "unasked", "%s behind %s, %s", count_of(record.size, "byte"),
            request.command.mnemonic, why)
    else
        complain(item, "unasked", "%s, and there was no command", count_of(record.size, "byte"))
    end
    return string.format("%s that nobody asked for", count_of(record.size, "byte"))
end

-- Shows from how many segments a record is put together.
local function show_segments(record, tree)
    if record.parts > 1 then
        add_generated(tree, "segments", record.parts)
        add_generated(tree, "begins_in", record.first_frame)
    end
end

local function progress_of(record)
    if record.wanted then
        return string.format("%d of %s", record.size, count_of(record.wanted, "byte"))
    end
    return string.format("%s and no carriage return", count_of(record.size, "byte"))
end

local function check_length(record, tree, is_final)
    if is_final and not record.whole and not record.may_end then
        complain(tree, "length", "%s", progress_of(record))
    end
end

local function show_link_to_answer(request, tree, is_final)
    if not request.command.answer or request.answer_size == 0 then
        return
    elseif request.answer then
        add_generated(tree, "answer_in", request.answer.frame)
    elseif is_final and (request.whole or request.may_end) then
        complain(tree, "no_answer", "No answer to %s", request.command.mnemonic)
    end
end

local function show_request(record, range, tree, is_final)
    local item = tree:add(fields.request, range)
    local cursor = cursor_over(range, item)
    local command = record.command
    item:set_text(string.format("Request: %s, %s", command.mnemonic, command.purpose))
    cursor:add("command", #command.mnemonic + 1, command.mnemonic)
    show_segments(record, item)
    local detail = command.show and command.show(cursor, record)
    check_length(record, item, is_final)
    show_link_to_answer(record, item, is_final)
    return string.format("%s: %s", command.mnemonic, detail and command.purpose .. ", " .. detail or
        command.purpose)
end

local function show_time(answer, tree)
    local seconds = math.max(0, answer.time - answer.request.time)
    local nanoseconds = math.floor(seconds * 1e9 + 0.5)
    local item = add_generated(tree, "time",
        NSTime.new(math.floor(nanoseconds / 1e9), nanoseconds % 1e9))
    if seconds > LATE_AFTER[answer.command.answer] then
        complain(item, "late", "The tool waits %s for this answer",
            count_of(LATE_AFTER[answer.command.answer], "second"))
    end
end

local function show_answer(record, range, tree, is_final)
    local item = tree:add(fields.answer, range)
    local command = record.command
    item:set_text(string.format("Answer to %s, %s", command.mnemonic, command.purpose))
    add_generated(item, "command", command.mnemonic)
    add_generated(item, "request_in", record.request.frame)
    show_time(record, item)
    show_segments(record, item)
    local detail = command.show_answer(cursor_over(range, item), record)
    check_length(record, item, is_final)
    return string.format("answer to %s: %s", command.mnemonic, detail or command.purpose)
end

local function show_record(record, range, tree, is_final)
    if record.kind == "unasked" then
        return show_unasked(record, range, tree)
    elseif not record.command then
        return show_no_command(record, range, tree)
    elseif record.kind == "request" then
        return show_request(record, range, tree, is_final)
    end
    return show_answer(record, range, tree, is_final)
end

-- Gives all bytes of a record: those of this segment, or put together from several segments.
local function range_of(part, range)
    if part.record.parts == 1 then
        return range
    end
    return ByteArray.new(text_of(part.record), true):tvb("VX440 frame")()
end

local function show(part, tvb, tree, is_final)
    local range = tvb(part.offset, part.size)
    local record = part.record
    local too_long = not is_final and not record.whole and record.size > LONGEST_UNFINISHED
    if record.last_part ~= part or too_long then
        return show_part(part, range, tree)
    end
    local text = show_record(record, range_of(part, range), tree, is_final)
    local unfinished = not record.whole and not record.may_end and record.command
    return unfinished and string.format("%s (%s)", text, progress_of(record)) or text
end

function vx440.dissector(tvb, pinfo, tree)
    if tvb:len() == 0 then
        return 0
    end
    pinfo.cols.protocol = "VX440"
    local root = tree:add(vx440, tvb())
    local texts = {}
    for _, part in ipairs(parts_of(tvb, pinfo)) do
        local text = show(part, tvb, root, pinfo.visited)
        if #texts < MOST_TEXTS_OF_A_PACKET then
            texts[#texts + 1] = text
        else
            texts[MOST_TEXTS_OF_A_PACKET + 1] = "..."
        end
    end
    if tvb:reported_len() > tvb:len() then
        root:add_proto_expert_info(experts.not_captured)
    end
    pinfo.cols.info = table.concat(texts, "; ")
    return tvb:len()
end

DissectorTable.get("tcp.port"):add(TCP_PORT, vx440)
