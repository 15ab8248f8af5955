-- What the command adds to the script language: help and show. The command puts two locals in
-- front: helpIndex, the list of functions, and helpTexts, the text about each by its name.

-- The name of a function that there is help on; nil for any other value.
local function functionName(value)
  for name in pairs(helpTexts) do
    if rawequal(_G[name], value) then return name end
  end
end

-- The lines of the index that mention a text, upper or lower case alike.
local function linesMentioning(text)
  local lines = {}
  for line in helpIndex:gmatch("  [^\n]+") do
    if line:lower():find(text:lower(), 1, true) then lines[#lines + 1] = line end
  end
  return lines
end

local function printHelp(_, topic)
  if topic == nil then
    print(helpIndex)
    return
  end
  local name = type(topic) == "string" and topic or functionName(topic)
  if helpTexts[name] then
    print(helpTexts[name])
    return
  end
  local lines = name and linesMentioning(name) or {}
  if #lines == 0 then
    print("There is no help on this; help() lists the functions.")
  else
    print(table.concat(lines, "\n"))
  end
end

help = setmetatable({}, {
  __call = printHelp,
  __tostring = function() return 'help() lists the functions, help("Name") tells about one.' end,
})

local LONGEST = 20  -- elements of a table that are shown
local DEEPEST = 3   -- levels of tables within tables

local function sortedKeys(value)
  local keys = {}
  for key in pairs(value) do
    if math.type(key) ~= "integer" or key < 1 or key > #value then keys[#keys + 1] = key end
  end
  table.sort(keys, function(a, b) return tostring(a) < tostring(b) end)
  return keys
end

local describe

local function describeTable(value, depth)
  if depth > DEEPEST then return "{...}" end
  local parts = {}
  for i = 1, math.min(#value, LONGEST) do parts[i] = describe(value[i], depth) end
  if #value > LONGEST then parts[#parts + 1] = "... " .. #value .. " elements" end
  for _, key in ipairs(sortedKeys(value)) do
    if #parts > LONGEST then
      parts[#parts + 1] = "..."
      break
    end
    parts[#parts + 1] = tostring(key) .. " = " .. describe(value[key], depth)
  end
  return "{" .. table.concat(parts, ", ") .. "}"
end

-- A record or options on lines of their own: names in one column, values in the next.
local function describeMembers(value, title)
  local width = 0
  for name in pairs(value) do width = math.max(width, #tostring(name)) end
  local lines = {title}
  local indent = "\n" .. (" "):rep(width + 4)
  for name, member in pairs(value) do
    local text = describe(member, 1):gsub("\n", indent)
    lines[#lines + 1] = string.format("  %-" .. width .. "s  %s", name, text)
  end
  return table.concat(lines, "\n")
end

function describe(value, depth)
  local meta = getmetatable(value)
  if type(value) == "table" and not (type(meta) == "table" and meta.__tostring) then
    return describeTable(value, depth + 1)
  end
  if type(value) == "userdata" and depth == 0 then
    local title = tostring(value):match("^(%u%l+)%(")
    if title == "Record" or title == "Options" then return describeMembers(value, title) end
  end
  if type(value) == "string" and depth > 0 then return string.format("%q", value) end
  if type(value) == "function" and functionName(value) then
    return "function " .. functionName(value)
  end
  return tostring(value)
end

-- Prints values as the prompt does: tables with what they hold. Without values nothing.
function show(...)
  local count = select("#", ...)
  if count == 0 then return end
  local parts = {}
  for i = 1, count do parts[i] = describe((select(i, ...)), 0) end
  print(table.concat(parts, "\t"))
end
