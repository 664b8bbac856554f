<?xml version="1.0" encoding="utf-8"?>
<!-- Writes dhcpd.conf from the DHCP server's settings as conf-tool does, without any check:
     xsltproc dhcpd.xsl /mnt/main/etc/settings/dhcp-server.xml -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="utf-8"/>
  <xsl:key name="number" match="option[@num]" use="@num"/>

  <xsl:template match="/unit">
    <xsl:text>authoritative;&#10;option voip-tftp-server code 150 = array of ip-address;&#10;</xsl:text>
    <xsl:for-each select="descendant::option[@num][generate-id() = generate-id(key('number', @num)[1])]">
      <xsl:value-of select="concat('option opt-', @num, ' code ', @num, ' = ')"/>
      <xsl:choose>
        <xsl:when test="@type = 'ip'">ip-address</xsl:when>
        <xsl:when test="@type = 'ascii'">text</xsl:when>
        <xsl:otherwise>string</xsl:otherwise>
      </xsl:choose>
      <xsl:text>;&#10;</xsl:text>
    </xsl:for-each>
    <xsl:apply-templates select="*"/>
  </xsl:template>

  <xsl:template match="subnet">
    <xsl:value-of select="concat('subnet ', @address, ' netmask ', @netmask, ' {&#10;')"/>
    <xsl:apply-templates select="*"><xsl:with-param name="indent" select="'  '"/></xsl:apply-templates>
    <xsl:text>}&#10;</xsl:text>
  </xsl:template>

  <xsl:template match="host">
    <xsl:value-of select="concat('  host ', @name, ' {&#10;    hardware ', hardware/@type, ' ', hardware/@mac,
                                 ';&#10;    fixed-address ', address, ';&#10;')"/>
    <xsl:apply-templates select="*"><xsl:with-param name="indent" select="'    '"/></xsl:apply-templates>
    <xsl:text>  }&#10;</xsl:text>
  </xsl:template>

  <xsl:template match="range">
    <xsl:value-of select="concat('  range ', @from, ' ', @to, ';&#10;')"/>
  </xsl:template>

  <xsl:template match="default-lease-time | max-lease-time">
    <xsl:param name="indent"/>
    <xsl:value-of select="concat($indent, name(), ' ', ., ';&#10;')"/>
  </xsl:template>

  <xsl:template match="option">
    <xsl:param name="indent"/>
    <xsl:choose>
      <xsl:when test="@num">
        <xsl:value-of select="concat($indent, 'option opt-', @num, ' ')"/>
        <xsl:if test="@type = 'ascii'">"</xsl:if>
        <xsl:value-of select="."/>
        <xsl:if test="@type = 'ascii'">"</xsl:if>
        <xsl:text>;&#10;</xsl:text>
      </xsl:when>
      <xsl:when test="@name = 'tftp-server'">
        <xsl:value-of select="concat($indent, 'next-server ', ., ';&#10;')"/>
        <xsl:if test="@file">
          <xsl:value-of select="concat($indent, 'option bootfile-name &quot;', @file, '&quot;;&#10;')"/>
        </xsl:if>
      </xsl:when>
      <xsl:when test="@name = 'domain-name'">
        <xsl:value-of select="concat($indent, 'option domain-name &quot;', ., '&quot;;&#10;')"/>
      </xsl:when>
      <xsl:when test="address">
        <xsl:value-of select="concat($indent, 'option ', @name, ' ')"/>
        <xsl:for-each select="address">
          <xsl:if test="position() > 1">, </xsl:if>
          <xsl:value-of select="."/>
        </xsl:for-each>
        <xsl:text>;&#10;</xsl:text>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat($indent, 'option ', @name, ' ', ., ';&#10;')"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="interface | hardware | host/address"/>
</xsl:stylesheet>
