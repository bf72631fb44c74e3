# Writes the bill of materials of an installation in the form SPDX 2.3 (JSON). Included by the install script after all other
# files, with
#   BOM_PREFIX     the folder of the installation
#   BOM_FILE       the file to write, relative to it
#   BOM_VERSION, BOM_THIRD_PARTIES ("name|version|licence|relation" for each)
#   BOM_TOOL       what built it
# bom_text(<out> <text>): a JSON string.
function(bom_text out text)
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  set(${out} "\"${text}\"" PARENT_SCOPE)
endfunction()

set(root "${BOM_PREFIX}")
if(NOT "$ENV{DESTDIR}" STREQUAL "")
  set(root "$ENV{DESTDIR}${BOM_PREFIX}")
endif()

# The files of this run, in the order of their names.
set(names "")
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  file(RELATIVE_PATH name "${BOM_PREFIX}" "${file}")
  if(NOT name STREQUAL BOM_FILE)
    list(APPEND names "${name}")
  endif()
endforeach()
list(REMOVE_DUPLICATES names)
list(SORT names)

set(files "")
set(relations "")
set(digests "")
set(number 0)
foreach(name IN LISTS names)
  math(EXPR number "${number} + 1")
  file(SHA1 "${root}/${name}" sha1)
  file(SHA256 "${root}/${name}" sha256)
  list(APPEND digests "${sha1}")
  bom_text(text "./${name}")
  string(APPEND files "    {\"SPDXID\": \"SPDXRef-File-${number}\", \"fileName\": ${text},\n"
    "     \"checksums\": [{\"algorithm\": \"SHA1\", \"checksumValue\": \"${sha1}\"},\n"
    "                   {\"algorithm\": \"SHA256\", \"checksumValue\": \"${sha256}\"}],\n"
    "     \"licenseConcluded\": \"NOASSERTION\", \"copyrightText\": \"NOASSERTION\"},\n")
  string(APPEND relations "    {\"spdxElementId\": \"SPDXRef-WattleafService\", \"relationshipType\": \"CONTAINS\","
    " \"relatedSpdxElement\": \"SPDXRef-File-${number}\"},\n")
endforeach()
string(REGEX REPLACE ",\n$" "" files "${files}")
list(SORT digests)
list(JOIN digests "" digests)
string(SHA1 verification "${digests}")

set(packages "")
foreach(row IN LISTS BOM_THIRD_PARTIES)
  string(REPLACE "|" ";" row "${row}")
  list(GET row 0 name)
  list(GET row 1 version)
  list(GET row 2 licence)
  list(GET row 3 relation)
  string(APPEND packages ",\n    {\"SPDXID\": \"SPDXRef-Part-${name}\", \"name\": \"${name}\", \"versionInfo\": \"${version}\",\n"
    "     \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": false,\n"
    "     \"licenseConcluded\": \"${licence}\", \"licenseDeclared\": \"${licence}\", \"copyrightText\": \"NOASSERTION\"}")
  string(APPEND relations "    {\"spdxElementId\": \"SPDXRef-WattleafService\", \"relationshipType\": \"${relation}\","
    " \"relatedSpdxElement\": \"SPDXRef-Part-${name}\"},\n")
endforeach()

# The same for the same files, as the format asks for a name that no other document has.
string(UUID unique NAMESPACE "6ba7b811-9dad-11d1-80b4-00c04fd430c8" NAME "${verification}" TYPE SHA1)
string(TIMESTAMP created "%Y-%m-%dT%H:%M:%SZ" UTC)
bom_text(tool "Tool: ${BOM_TOOL}")
file(WRITE "${root}/${BOM_FILE}" "{
  \"spdxVersion\": \"SPDX-2.3\",
  \"dataLicense\": \"CC0-1.0\",
  \"SPDXID\": \"SPDXRef-DOCUMENT\",
  \"name\": \"WattleafService-${BOM_VERSION}\",
  \"documentNamespace\": \"urn:uuid:${unique}\",
  \"creationInfo\": {\"created\": \"${created}\", \"creators\": [${tool}]},
  \"packages\": [
    {\"SPDXID\": \"SPDXRef-WattleafService\", \"name\": \"WattleafService\", \"versionInfo\": \"${BOM_VERSION}\",
     \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": true,
     \"packageVerificationCode\": {\"packageVerificationCodeValue\": \"${verification}\"},
     \"licenseConcluded\": \"NOASSERTION\", \"licenseDeclared\": \"NOASSERTION\", \"copyrightText\": \"NOASSERTION\"}${packages}
  ],
  \"files\": [
${files}
  ],
  \"relationships\": [
${relations}    {\"spdxElementId\": \"SPDXRef-DOCUMENT\", \"relationshipType\": \"DESCRIBES\", \"relatedSpdxElement\": \"SPDXRef-WattleafService\"}
  ]
}
")
